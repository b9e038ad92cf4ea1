// SPDX-License-Identifier: MIT
#include "platform/linux/files/RegularFile.h"
#include "tests/platform/thumbnails/GeneratorFixture.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QDir>
#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

class LinuxThumbnailGeneratorTest : public QObject {
    Q_OBJECT

private slots:
    void a_picture_fits_the_points_at_their_scale_data();
    void a_picture_fits_the_points_at_their_scale();
    void the_points_are_those_of_the_picture_as_it_is_stored();
    void a_completion_is_called_later();
    void who_waits_longer_than_a_blink_is_told();
    void bad_input_is_answered_with_nothing_data();
    void bad_input_is_answered_with_nothing();
    void names_of_any_bytes_are_served();
    void a_drawing_is_rendered();
    void an_entry_of_the_cache_is_used();
    void a_decoded_photo_is_kept_in_the_cache();
    void a_small_picture_is_not_kept();
    void a_file_just_changed_is_neither_looked_up_nor_kept();
    void a_broken_file_is_decoded_once_only();
    void a_file_of_the_cache_itself_is_decoded_but_not_kept();
    void requests_for_the_same_pixels_that_wait_are_served_together();
    void requests_for_other_pixels_are_served_apart();
    void every_completion_is_called_once_when_the_generator_goes();
};

void LinuxThumbnailGeneratorTest::a_picture_fits_the_points_at_their_scale_data()
{
    QTest::addColumn<QSize>("original");
    QTest::addColumn<double>("edge");
    QTest::addColumn<double>("scale");
    QTest::addColumn<QSizeF>("points");
    QTest::addColumn<QSize>("pixels");
    QTest::newRow("1x") << QSize(1920, 1080) << 72.0 << 1.0 << QSizeF(72, 41) << QSize(72, 41);
    QTest::newRow("2x") << QSize(1920, 1080) << 72.0 << 2.0 << QSizeF(72, 41) << QSize(144, 81);
    QTest::newRow("1.5x") << QSize(1080, 1920) << 72.0 << 1.5 << QSizeF(41, 72) << QSize(61, 108);
    QTest::newRow("square") << QSize(900, 900) << 72.0 << 1.0 << QSizeF(72, 72) << QSize(72, 72);
    QTest::newRow("not blown up") << QSize(30, 20) << 72.0 << 2.0 << QSizeF(72, 48) << QSize(30, 20);
    QTest::newRow("beyond the cache") << QSize(1600, 1200) << 1500.0 << 1.0 << QSizeF(1500, 1125) << QSize(1500, 1125);
}

void LinuxThumbnailGeneratorTest::a_picture_fits_the_points_at_their_scale()
{
    QFETCH(QSize, original);
    QFETCH(double, edge);
    QFETCH(double, scale);
    GeneratorFixture f;
    f.request(f.samples.file("a.png", SampleFiles::picture("png", original)), edge, scale);
    VERIFY_ANSWERS(f, 1);
    QVERIFY(f.answers.last());
    QTEST(f.answers.last()->size(), "pixels");
    QTEST(f.answers.points.last(), "points");
    QCOMPARE(f.answers.last()->devicePixelRatio(), 1.0);
}

void LinuxThumbnailGeneratorTest::the_points_are_those_of_the_picture_as_it_is_stored()
{
    GeneratorFixture f;
    f.request(f.samples.file("caf\xe9.jpg", SampleFiles::turnedJpeg({70, 40}, 6)));
    VERIFY_ANSWERS(f, 1);
    // The picture is rotated, and the size in points is not.
    QCOMPARE(f.answers.points.last(), QSizeF(72, 41));
    QVERIFY(f.answers.last()->height() > f.answers.last()->width());
}

void LinuxThumbnailGeneratorTest::a_completion_is_called_later()
{
    GeneratorFixture f;
    f.request(f.samples.file("a.png", SampleFiles::picture("png", {80, 40})));
    QCOMPARE(f.answers.count(), 0);
    VERIFY_ANSWERS(f, 1);
}

void LinuxThumbnailGeneratorTest::who_waits_longer_than_a_blink_is_told()
{
    GeneratorFixture f;
    int delayed = 0;
    const QByteArray path = f.samples.file("a.png", SampleFiles::picture("png", {80, 40}));
    f.generator.generate(SampleFiles::url(path), 72, 1, f.answers.next(), [&delayed] { ++delayed; });
    // Answers are read only while the main loop runs.
    f.queue.advance(LinuxThumbnailGenerator::kBlink - 0.01);
    QCOMPARE(delayed, 0);
    f.queue.advance(0.01);
    QCOMPARE(delayed, 1);
    VERIFY_ANSWERS(f, 1);
    f.generator.generate(SampleFiles::url(path), 72, 1, f.answers.next(), [&delayed] { ++delayed; });
    VERIFY_ANSWERS(f, 2);
    f.queue.advance(1);
    QCOMPARE(delayed, 1);
}

void LinuxThumbnailGeneratorTest::bad_input_is_answered_with_nothing_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("contents");
    const QByteArray png = SampleFiles::picture("png", {800, 400});
    QTest::newRow("empty png") << QByteArray("a.png") << QByteArray();
    QTest::newRow("truncated png") << QByteArray("a.png") << png.left(png.size() / 2);
    QTest::newRow("60000 x 60000 png") << QByteArray("a.png") << SampleFiles::pngHeader({60'000, 60'000});
    QTest::newRow("20000 x 20000 png") << QByteArray("a.png") << SampleFiles::pngHeader({20'000, 20'000});
    QTest::newRow("text named png") << QByteArray("a.png") << QByteArray("no picture");
    QTest::newRow("text") << QByteArray("a.txt") << QByteArray("no picture");
    QTest::newRow("pdf without a service") << QByteArray("a.pdf") << QByteArray("%PDF-1.4\n");
    QTest::newRow("drawing that is none") << QByteArray("a.svg") << QByteArray("<svg");
    QTest::newRow("no file") << QByteArray() << QByteArray();
    QTest::newRow("fifo") << QByteArray("fifo") << QByteArray();
    QTest::newRow("device") << QByteArray("device") << QByteArray();
    QTest::newRow("folder") << QByteArray("folder") << QByteArray();
    QTest::newRow("dangling link") << QByteArray("link") << QByteArray();
}

void LinuxThumbnailGeneratorTest::bad_input_is_answered_with_nothing()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, contents);
    GeneratorFixture f;
    QByteArray path = f.samples.path(name);
    if (name.isEmpty())
        path = f.samples.path("missing.png");
    else if (name == "fifo")
        QCOMPARE(::mkfifo(path.constData(), 0600), 0);
    else if (name == "device")
        path = "/dev/zero";
    else if (name == "folder")
        QCOMPARE(::mkdir(path.constData(), 0700), 0);
    else if (name == "link")
        QCOMPARE(::symlink("/nowhere/at/all.png", path.constData()), 0);
    else
        f.samples.file(name, contents);
    f.request(path);
    VERIFY_ANSWERS(f, 1);
    QVERIFY(!f.answers.last());
    // The generator does not wait for a file that does not change.
    QCOMPARE(f.queue.pendingCount(), 0);
}

void LinuxThumbnailGeneratorTest::names_of_any_bytes_are_served()
{
    GeneratorFixture f;
    const QByteArray picture = SampleFiles::picture("jpeg", {800, 400});
    qsizetype count = 0;
    for (const QByteArray &name :
         {QByteArray("a b.jpg"), QByteArray("a\nb'\"%41#?.jpg"), QByteArray("\xf0\x9f\x98\x80"),
          QByteArray("\xd7\xa9\xd7\x9c.jpg"), QByteArray("caf\xe9\xff.jpg")}) {
        f.request(f.samples.file(name, picture));
        ++count;
        VERIFY_ANSWERS(f, count);
        QVERIFY2(f.answers.last(), name.constData());
    }
}

void LinuxThumbnailGeneratorTest::a_drawing_is_rendered()
{
    GeneratorFixture f;
    const QByteArray drawing = "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 20 10'>"
                               "<rect width='20' height='10' fill='red'/></svg>";
    f.request(f.samples.file("a.svg", drawing), 72, 2);
    VERIFY_ANSWERS(f, 1);
    QVERIFY(f.answers.last());
    QCOMPARE(f.answers.last()->size(), QSize(144, 72));
    QCOMPARE(f.answers.last()->pixelColor(70, 30), QColor(Qt::red));
}

void LinuxThumbnailGeneratorTest::an_entry_of_the_cache_is_used()
{
    GeneratorFixture f;
    const QByteArray path = f.samples.file("a.jpg", SampleFiles::picture("jpeg", {800, 400}));
    QImage entry(128, 64, QImage::Format_RGB32);
    entry.fill(Qt::green);
    QVERIFY(f.cache.store(path, RegularFile::open(path)->state(), entry, *ThumbnailCache::sizeClassFor({128, 128})));
    f.request(path);
    VERIFY_ANSWERS(f, 1);
    QCOMPARE(f.answers.last()->size(), QSize(72, 36));
    QCOMPARE(f.answers.last()->pixelColor(9, 9), QColor(Qt::green));
    // At twice the scale, this entry is too small.
    f.request(path, 72, 2);
    VERIFY_ANSWERS(f, 2);
    QVERIFY(f.answers.last()->pixelColor(9, 9).red() > 240);
}

void LinuxThumbnailGeneratorTest::a_decoded_photo_is_kept_in_the_cache()
{
    GeneratorFixture f;
    const QByteArray path = f.samples.file("a.jpg", SampleFiles::picture("jpeg", {1000, 500}));
    const FileState state = RegularFile::open(path)->state();
    f.request(path);
    VERIFY_ANSWERS(f, 1);
    QTRY_VERIFY_WITH_TIMEOUT(f.cache.find(path, state, {72, 72}), kPatience);
    QCOMPARE(f.cache.find(path, state, {72, 72})->size(), QSize(128, 64));
    f.request(path, 72, 2);
    VERIFY_ANSWERS(f, 2);
    QTRY_VERIFY_WITH_TIMEOUT(f.cache.find(path, state, {144, 144}), kPatience);
    QCOMPARE(f.cache.find(path, state, {144, 144})->size(), QSize(256, 128));
}

void LinuxThumbnailGeneratorTest::a_small_picture_is_not_kept()
{
    GeneratorFixture f;
    f.request(f.samples.file("a.jpg", SampleFiles::picture("jpeg", {300, 300})));
    VERIFY_ANSWERS(f, 1);
    f.request(f.samples.file("b.jpg", SampleFiles::picture("jpeg", {1000, 500})));
    VERIFY_ANSWERS(f, 2);
    const QDir normal(QFile::decodeName(f.cacheFolder + "/normal"));
    QTRY_COMPARE_WITH_TIMEOUT(normal.entryList({u"*.png"_s}, QDir::Files).size(), 1, kPatience);
}

void LinuxThumbnailGeneratorTest::a_file_just_changed_is_neither_looked_up_nor_kept()
{
    GeneratorFixture f;
    const QByteArray path = f.samples.file("a.jpg", SampleFiles::picture("jpeg", {1000, 500}));
    f.changeNow(path);
    const FileState state = RegularFile::open(path)->state();
    QImage entry(128, 64, QImage::Format_RGB32);
    entry.fill(Qt::green);
    QVERIFY(f.cache.store(path, state, entry, *ThumbnailCache::sizeClassFor({128, 128})));
    f.request(path);
    VERIFY_ANSWERS(f, 1);
    QVERIFY(f.answers.last()->pixelColor(9, 9).red() > 240);
    // A second later the same entry is valid, and it is still the old one.
    f.queue.advance(1);
    f.request(path);
    VERIFY_ANSWERS(f, 2);
    QCOMPARE(f.answers.last()->pixelColor(9, 9), QColor(Qt::green));
}

void LinuxThumbnailGeneratorTest::a_broken_file_is_decoded_once_only()
{
    GeneratorFixture f;
    const QByteArray png = SampleFiles::picture("png", {800, 400});
    const QByteArray path = f.samples.file("a.png", png.left(png.size() / 2) + QByteArray(png.size() / 2, 'x'));
    f.request(path);
    VERIFY_ANSWERS(f, 1);
    QVERIFY(!f.answers.last());
    QTRY_VERIFY_WITH_TIMEOUT(f.cache.hasFailure(path, RegularFile::open(path)->state()), kPatience);
    // A repaired file with the old date and size still counts as broken, and not with a new date.
    f.samples.file("a.png", png + QByteArray(png.size() / 2 * 2 - png.size(), 'x'));
    f.request(path);
    VERIFY_ANSWERS(f, 2);
    SampleFiles::setModified(path, 1'650'000'000);
    f.request(path);
    VERIFY_ANSWERS(f, 3);
    QVERIFY(f.answers.last());
}

void LinuxThumbnailGeneratorTest::a_file_of_the_cache_itself_is_decoded_but_not_kept()
{
    GeneratorFixture f;
    QVERIFY(QDir().mkpath(QFile::decodeName(f.cacheFolder + "/xx-large")));
    f.request(f.samples.file("cache/thumbnails/xx-large/a.png", SampleFiles::picture("png", {1024, 512})));
    VERIFY_ANSWERS(f, 1);
    QVERIFY(f.answers.last());
    QVERIFY(!QFile::exists(QFile::decodeName(f.cacheFolder + "/normal")));
}

void LinuxThumbnailGeneratorTest::requests_for_the_same_pixels_that_wait_are_served_together()
{
    constexpr int kRequests = 200;
    GeneratorFixture f;
    const QByteArray photo = f.samples.file("a.png", SampleFiles::picture("png", {1920, 1080}));
    for (int i = 0; i < kRequests; ++i)
        f.request(photo, 72 + i % 10 * 0.09, 1);
    VERIFY_ANSWERS(f, kRequests);
    QCOMPARE(f.answers.sizes().count(f.answers.last()->size()), qsizetype(kRequests));
    // Only the first requests were begun, at most as many as there are threads.
    QVERIFY2(f.answers.different() < kRequests / 2, qPrintable(QString::number(f.answers.different())));
}

void LinuxThumbnailGeneratorTest::requests_for_other_pixels_are_served_apart()
{
    GeneratorFixture f;
    const QByteArray first = f.samples.file("a.png", SampleFiles::picture("png", {1600, 1600}));
    const QByteArray second = f.samples.file("b.png", SampleFiles::picture("png", {1600, 800}));
    for (int i = 0; i < 10; ++i) {
        f.request(first, 72);
        f.request(first, 73);
        f.request(second, 72);
    }
    VERIFY_ANSWERS(f, 30);
    for (const QSize &size : {QSize(72, 72), QSize(73, 73), QSize(72, 36)})
        QCOMPARE(f.answers.sizes().count(size), qsizetype(10));
}

void LinuxThumbnailGeneratorTest::every_completion_is_called_once_when_the_generator_goes()
{
    const SampleFiles samples;
    VirtualMainQueue queue;
    Answers answers;
    const QByteArray photo = samples.file("a.jpg", SampleFiles::picture("jpeg", {3000, 2000}));
    const QByteArray growing = samples.file("b.png", "");
    SampleFiles::setModified(growing, queue.currentDate().toSecsSinceEpoch());
    {
        LinuxThumbnailGenerator generator(queue, std::make_shared<FileHelpers>(queue), samples.path("cache"));
        // One request waits for its writer, one is about to, and the rest wait for their turn.
        generator.generate(SampleFiles::url(growing), 72, 1, answers.next());
        QTRY_COMPARE_WITH_TIMEOUT(queue.pendingCount(), 1, kPatience);
        queue.runPending();
        generator.generate(SampleFiles::url(growing), 72, 1, answers.next());
        QTRY_COMPARE_WITH_TIMEOUT(queue.pendingCount(), 1, kPatience);
        for (int i = 0; i < 48; ++i)
            generator.generate(SampleFiles::url(photo), 72, 1, answers.next());
    }
    QCOMPARE(answers.count(), 50);
    queue.advance(60);
    QCOMPARE(answers.count(), 50);
}

PARKLET_TEST(LinuxThumbnailGeneratorTest)
#include "LinuxThumbnailGeneratorTest.moc"
