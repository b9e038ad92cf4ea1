// SPDX-License-Identifier: MIT
#include "platform/macos/MacFileEventStreams.h"
#include "platform/macos/MacThumbnailGenerator.h"
#include "tests/support/TestProgram.h"

#include <QFile>
#include <QImage>
#include <QMutex>
#include <QTemporaryDir>
#include <QTest>

// What the system says of a file: its date, its size in pixels, its thumbnail.
class MacFilesTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();

    void a_new_file_was_created_just_now();
    void a_picture_has_the_size_that_its_header_states();
    void a_picture_has_a_thumbnail_that_shows_it();

private:
    const QTemporaryDir folder;
    QUrl picture;
};

void MacFilesTest::initTestCase()
{
    QImage image(1200, 800, QImage::Format_RGB32);
    image.fill(Qt::red);
    picture = QUrl::fromLocalFile(folder.filePath(QStringLiteral("Bild 雪.png")));
    QVERIFY(image.save(picture.toLocalFile()));
}

void MacFilesTest::a_new_file_was_created_just_now()
{
    const auto date = MacFileEventStreams().creationDate(picture);
    QVERIFY(date);
    QVERIFY(date->isValid());
    QVERIFY(qAbs(date->secsTo(QDateTime::currentDateTime())) < 60);
}

void MacFilesTest::a_picture_has_the_size_that_its_header_states()
{
    const auto size = MacThumbnailGenerator::imagePixelSize(picture);
    QVERIFY(size);
    QCOMPARE(*size, QSize(1200, 800));
}

void MacFilesTest::a_picture_has_a_thumbnail_that_shows_it()
{
    MacThumbnailGenerator generator;
    QMutex mutex;
    bool isAnswered = false;
    std::optional<QImage> thumbnail;
    generator.generate(picture, 72, 2, [&](std::optional<Thumbnail> made) {
        const QMutexLocker lock(&mutex);
        isAnswered = true;
        if (made)
            thumbnail = made->image;
    });
    QVERIFY(QTest::qWaitFor(
        [&] {
            const QMutexLocker lock(&mutex);
            return isAnswered;
        },
        20'000));
    QVERIFY(thumbnail);
    QCOMPARE(thumbnail->devicePixelRatio(), 1.0);
    QVERIFY(thumbnail->width() <= 144 && thumbnail->height() <= 144);
    QVERIFY(thumbnail->width() > 72);
    QVERIFY(qAbs(3 * thumbnail->height() - 2 * thumbnail->width()) <= 3);
    const QColor middle = thumbnail->pixelColor(thumbnail->rect().center());
    QVERIFY(middle.red() > 200 && middle.green() < 80 && middle.blue() < 80);
}

PARKLET_TEST(MacFilesTest)

#include "MacFilesTest.moc"
