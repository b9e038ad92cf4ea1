// SPDX-License-Identifier: MIT
#include "platform/linux/thumbnailer/ImageThumbnailer.h"

#include "tests/support/SampleFiles.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QBuffer>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

class ImageThumbnailerTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void a_picture_keeps_its_aspect_and_is_never_made_larger_data();
    void a_picture_keeps_its_aspect_and_is_never_made_larger();
    void a_fitted_image_is_plain_pixels();
    void each_format_is_decoded_at_the_size_asked_for_data();
    void each_format_is_decoded_at_the_size_asked_for();
    void a_small_picture_stays_as_small_as_it_is();
    void a_turned_photo_comes_upright_and_fits();
    void transparency_is_kept();
    void a_photo_of_100_megapixels_is_never_held_whole();
    void a_truncated_jpeg_is_a_partial_picture();
    void a_truncated_png_is_broken();
    void garbage_after_a_good_header_is_broken();
    void a_picture_beyond_the_bounds_is_refused_unread_data();
    void a_picture_beyond_the_bounds_is_refused_unread();
    void no_more_of_a_file_is_read_than_its_picture_can_take_data();
    void no_more_of_a_file_is_read_than_its_picture_can_take();

private:
    Decoding decode(const QByteArray &contents, const QSize &bound) const
    {
        const auto file = RegularFile::open(samples.file("image", contents));
        const auto header = readImageHeader(*file);
        return header ? decodeImage(*file, *header, bound) : Decoding{Decoding::Outcome::Broken, {}};
    }

    SampleFiles samples;
};

namespace {

bool isRedThenBlue(const QImage &image)
{
    const QColor left = image.pixelColor(image.width() / 4, image.height() / 2);
    const QColor right = image.pixelColor(image.width() * 3 / 4, image.height() / 2);
    return left.red() > 240 && left.blue() < 16 && right.blue() > 240 && right.red() < 16;
}

// The peak memory of this process since the last reset, in bytes.
qint64 peakMemory()
{
    QFile status(u"/proc/self/status"_s);
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toLongLong() * 1024;
    }
    return 0;
}

// The bytes that this process has read so far; -1 if the system does not report it.
qint64 bytesRead()
{
    QFile file(u"/proc/self/io"_s);
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray name = "rchar: ";
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith(name))
            return line.mid(name.size()).toLongLong();
    }
    return -1;
}

void resetPeakMemory()
{
    QFile file(u"/proc/self/clear_refs"_s);
    if (file.open(QIODevice::WriteOnly))
        file.write("5");
}

} // namespace

void ImageThumbnailerTest::initTestCase()
{
    silenceImageReaders();
}

void ImageThumbnailerTest::a_picture_keeps_its_aspect_and_is_never_made_larger_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("bound");
    QTest::addColumn<QSize>("fitted");
    QTest::newRow("landscape") << QSize(1920, 1080) << QSize(72, 72) << QSize(72, 41);
    QTest::newRow("portrait") << QSize(1080, 1920) << QSize(72, 72) << QSize(41, 72);
    QTest::newRow("bound is fitted") << QSize(1920, 1080) << QSize(72, 41) << QSize(72, 41);
    QTest::newRow("bound is rounded down") << QSize(1920, 1080) << QSize(72, 40) << QSize(71, 40);
    QTest::newRow("a line") << QSize(10'000, 1) << QSize(72, 72) << QSize(72, 1);
    QTest::newRow("a column") << QSize(1, 10'000) << QSize(1, 72) << QSize(1, 72);
    QTest::newRow("small") << QSize(16, 9) << QSize(72, 72) << QSize(16, 9);
    QTest::newRow("same") << QSize(72, 72) << QSize(72, 72) << QSize(72, 72);
}

void ImageThumbnailerTest::a_picture_keeps_its_aspect_and_is_never_made_larger()
{
    QFETCH(QSize, size);
    QFETCH(QSize, bound);
    QTEST(fittedPixelSize(size, bound), "fitted");
}

void ImageThumbnailerTest::a_fitted_image_is_plain_pixels()
{
    QImage image(200, 100, QImage::Format_Grayscale8);
    image.fill(Qt::white);
    image.setText(u"Comment"_s, QString(100'000, QLatin1Char('x')));
    image.setDevicePixelRatio(2.0);
    const QImage fitted = fittedImage(image, {72, 72});
    QCOMPARE(fitted.size(), QSize(72, 36));
    QCOMPARE(fitted.format(), QImage::Format_RGB32);
    QCOMPARE(fitted.devicePixelRatio(), 1.0);
    QCOMPARE(fitted.textKeys(), QStringList());
    QCOMPARE(fitted.pixelColor(35, 18), QColor(Qt::white));
}

void ImageThumbnailerTest::each_format_is_decoded_at_the_size_asked_for_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::newRow("png") << SampleFiles::picture("png", {1920, 1080});
    QTest::newRow("jpeg") << SampleFiles::picture("jpeg", {1920, 1080});
    QTest::newRow("progressive jpeg") << SampleFiles::progressiveJpeg({1920, 1080});
    QTest::newRow("bmp") << SampleFiles::picture("bmp", {1920, 1080});
}

void ImageThumbnailerTest::each_format_is_decoded_at_the_size_asked_for()
{
    QFETCH(QByteArray, contents);
    const Decoding decoding = decode(contents, {144, 82});
    QCOMPARE(decoding.outcome, Decoding::Outcome::Complete);
    QCOMPARE(decoding.image.size(), QSize(144, 81));
    QVERIFY(isRedThenBlue(decoding.image));
}

void ImageThumbnailerTest::a_small_picture_stays_as_small_as_it_is()
{
    QCOMPARE(decode(SampleFiles::picture("png", {20, 10}), {72, 72}).image.size(), QSize(20, 10));
}

void ImageThumbnailerTest::a_turned_photo_comes_upright_and_fits()
{
    // The image is rotated by 90 degrees clockwise, so its left half is at the top.
    const Decoding decoding = decode(SampleFiles::turnedJpeg({800, 400}, 6), {72, 36});
    QCOMPARE(decoding.outcome, Decoding::Outcome::Complete);
    QCOMPARE(decoding.image.size(), QSize(18, 36));
    QVERIFY(decoding.image.pixelColor(9, 5).red() > 240);
    QVERIFY(decoding.image.pixelColor(9, 30).blue() > 240);
}

void ImageThumbnailerTest::transparency_is_kept()
{
    QImage image(400, 400, QImage::Format_ARGB32);
    image.fill(QColor(255, 0, 0, 128));
    QBuffer png;
    png.open(QIODevice::WriteOnly);
    image.save(&png, "png");
    const Decoding decoding = decode(png.data(), {50, 50});
    QCOMPARE(decoding.image.format(), QImage::Format_ARGB32_Premultiplied);
    QCOMPARE(decoding.image.pixelColor(25, 25).alpha(), 128);
}

void ImageThumbnailerTest::a_photo_of_100_megapixels_is_never_held_whole()
{
    const QByteArray contents = [] {
        QImage image(10'000, 10'000, QImage::Format_Grayscale8);
        image.fill(Qt::white);
        QBuffer jpeg;
        jpeg.open(QIODevice::WriteOnly);
        image.save(&jpeg, "jpeg");
        return jpeg.data();
    }();
    resetPeakMemory();
    const qint64 before = peakMemory();
    const Decoding decoding = decode(contents, {128, 128});
    QCOMPARE(decoding.outcome, Decoding::Outcome::Complete);
    QCOMPARE(decoding.image.size(), QSize(128, 128));
    QVERIFY(before > 0);
    QVERIFY2(peakMemory() - before < 50'000'000, QByteArray::number(peakMemory() - before).constData());
}

void ImageThumbnailerTest::a_truncated_jpeg_is_a_partial_picture()
{
    const QByteArray contents = SampleFiles::picture("jpeg", {800, 400});
    const Decoding decoding = decode(contents.left(contents.size() * 2 / 3), {72, 72});
    QCOMPARE(decoding.outcome, Decoding::Outcome::Partial);
    QCOMPARE(decoding.image.size(), QSize(72, 36));
}

void ImageThumbnailerTest::a_truncated_png_is_broken()
{
    const QByteArray contents = SampleFiles::picture("png", {800, 400});
    const Decoding decoding = decode(contents.left(contents.size() * 2 / 3), {72, 72});
    QCOMPARE(decoding.outcome, Decoding::Outcome::Broken);
    QVERIFY(decoding.image.isNull());
}

void ImageThumbnailerTest::garbage_after_a_good_header_is_broken()
{
    QCOMPARE(decode(SampleFiles::pngHeader({80, 40}) + QByteArray(5000, 'x'), {72, 72}).outcome,
             Decoding::Outcome::Broken);
    const QByteArray jpeg = SampleFiles::picture("jpeg", {800, 400});
    QCOMPARE(decode(jpeg.left(jpeg.indexOf("\xff\xda")), {72, 72}).outcome, Decoding::Outcome::Broken);
}

void ImageThumbnailerTest::a_picture_beyond_the_bounds_is_refused_unread_data()
{
    QTest::addColumn<ImageHeader>("header");
    QTest::addColumn<bool>("within");
    const auto row = [](const char *name, const char *format, const QSize &size, bool streamed, bool within) {
        QTest::newRow(name) << ImageHeader{format, size, streamed} << within;
    };
    row("60000 x 60000 png", "png", {60'000, 60'000}, true, false);
    row("20000 x 20000 png", "png", {20'000, 20'000}, true, false);
    row("100-megapixel png", "png", {10'000, 10'000}, true, true);
    row("100-megapixel interlaced png", "png", {10'000, 10'000}, false, false);
    row("100-megapixel jpeg", "jpeg", {10'000, 10'000}, true, true);
    row("largest jpeg", "jpeg", {65'500, 65'500}, true, false);
    row("100-megapixel progressive jpeg", "jpeg", {10'000, 10'000}, false, false);
    row("24-megapixel progressive jpeg", "jpeg", {6'000, 4'000}, false, true);
    row("50-megapixel progressive jpeg", "jpeg", {8'660, 5'773}, false, false);
    row("16-megapixel webp", "webp", {4'000, 4'000}, false, true);
    row("24-megapixel webp", "webp", {6'000, 4'000}, false, false);
    row("no width", "png", {0, 5}, true, false);
}

void ImageThumbnailerTest::a_picture_beyond_the_bounds_is_refused_unread()
{
    QFETCH(ImageHeader, header);
    QFETCH(bool, within);
    QCOMPARE(isWithinDecodingBounds(header), within);
    if (!within && header.format == "png")
        QCOMPARE(decode(SampleFiles::pngHeader(header.size), {72, 72}).outcome,
                 header.streamed ? Decoding::Outcome::TooLarge : Decoding::Outcome::Broken);
}

void ImageThumbnailerTest::no_more_of_a_file_is_read_than_its_picture_can_take_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<bool>("isWhole");
    QTest::newRow("webp says where it ends") << SampleFiles::picture("webp", {16, 16}) << true;
    QTest::newRow("gif") << QByteArray("GIF89a\1\0\1\0\x80\0\0\0\0\0\xff\xff\xff,\0\0\0\0\1\0\1\0\0\2\2D\1\0;", 35)
                         << true;
    QTest::newRow("png") << SampleFiles::picture("png", {16, 16}) << true;
    QTest::newRow("jpeg ends elsewhere") << SampleFiles::picture("jpeg", {16, 16}) << false;
}

void ImageThumbnailerTest::no_more_of_a_file_is_read_than_its_picture_can_take()
{
    QFETCH(QByteArray, contents);
    QFETCH(bool, isWhole);
    constexpr qint64 kFourGigabytes = qint64(4) << 30;
    const QByteArray path = samples.file("long", contents);
    QVERIFY(QFile::resize(QFile::decodeName(path), kFourGigabytes));
    const auto file = RegularFile::open(path);
    const auto header = readImageHeader(*file);
    QVERIFY(header);
    resetPeakMemory();
    const qint64 before = peakMemory();
    const qint64 readBefore = bytesRead();
    QVERIFY(readBefore >= 0);
    const Decoding decoding = decodeImage(*file, *header, {72, 72});
    QCOMPARE(decoding.outcome, isWhole ? Decoding::Outcome::Complete : Decoding::Outcome::Partial);
    QCOMPARE(decoding.image.size(), header->size);
    QVERIFY2(peakMemory() - before < 40'000'000, QByteArray::number(peakMemory() - before).constData());
    QVERIFY2(bytesRead() - readBefore < 100'000'000, QByteArray::number(bytesRead() - readBefore).constData());
}

PARKLET_TEST(ImageThumbnailerTest)
#include "ImageThumbnailerTest.moc"
