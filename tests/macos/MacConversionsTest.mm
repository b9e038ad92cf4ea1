// SPDX-License-Identifier: MIT
#include "platform/macos/MacConversions.h"
#include "tests/support/TestProgram.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#import <AppKit/AppKit.h>

class MacConversionsTest : public QObject {
    Q_OBJECT

private slots:
    void a_colour_survives_the_way_there_and_back();
    void an_icon_becomes_a_picture_of_its_size();
    void a_file_may_be_named_by_its_place_on_the_disk();
    void what_is_no_file_is_none();
};

void MacConversionsTest::a_colour_survives_the_way_there_and_back()
{
    for (const QColor &color : {QColor(10, 200, 30, 128), QColor(0, 0, 0, 0), QColor(Qt::red)})
        QCOMPARE(fromNSColor(toNSColor(color))->rgba(), color.rgba());
}

void MacConversionsTest::an_icon_becomes_a_picture_of_its_size()
{
    QPixmap pixmap(128, 128);
    pixmap.fill(Qt::red);
    NSImage *image = toNSImage(QIcon(pixmap), QSize(64, 64), 2);
    QVERIFY(image);
    QCOMPARE(QSizeF::fromCGSize(image.size), QSizeF(64, 64));
    QCOMPARE(QColor(fromNSImage(image, QSize(32, 32)).pixel(16, 16)), QColor(Qt::red));
    QVERIFY(!toNSImage(QIcon(), QSize(64, 64), 2));
}

void MacConversionsTest::a_file_may_be_named_by_its_place_on_the_disk()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("Größe 雪.txt")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    NSURL *reference = [toNSURL(QUrl::fromLocalFile(file.fileName())) fileReferenceURL];
    QVERIFY(reference);
    const auto url = fromNSURL(reference);
    QVERIFY(url);
    QCOMPARE(QFileInfo(url->toLocalFile()).canonicalFilePath(), QFileInfo(file.fileName()).canonicalFilePath());
}

void MacConversionsTest::what_is_no_file_is_none()
{
    QVERIFY(!fromNSURL(nil));
    QVERIFY(!fromNSURL([NSURL URLWithString:@"https://orvane.example/"]));
}

PARKLET_TEST(MacConversionsTest)

#include "MacConversionsTest.moc"
