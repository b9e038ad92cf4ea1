// SPDX-License-Identifier: MIT
#include "platform/linux/ImageHeader.h"

#include "tests/support/SampleFiles.h"

#include <QTest>

class ImageHeaderTest : public QObject {
    Q_OBJECT

private slots:
    void each_format_states_its_size_data();
    void each_format_states_its_size();
    void the_orientation_is_not_applied();
    void only_what_can_be_read_row_by_row_is_streamed();
    void a_size_beyond_all_bounds_is_stated_as_it_is();
    void a_side_that_no_int_can_hold_is_no_size();
    void what_is_no_image_has_no_header_data();
    void what_is_no_image_has_no_header();
    void a_jpeg_of_endless_segments_is_not_followed();
    void every_shorter_piece_of_a_header_is_survived();

private:
    std::optional<ImageHeader> headerOf(const QByteArray &contents) const
    {
        return readImageHeader(*RegularFile::open(samples.file("image", contents)));
    }

    SampleFiles samples;
};

namespace {

QByteArray bytes(const char *hex)
{
    return QByteArray::fromHex(hex);
}

} // namespace

void ImageHeaderTest::each_format_states_its_size_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<QSize>("size");
    const auto row = [](const char *name, const QByteArray &contents, const char *format, const QSize &size) {
        QTest::newRow(name) << contents << QByteArray(format) << size;
    };
    row("png", SampleFiles::picture("png", {70, 40}), "png", {70, 40});
    row("jpeg", SampleFiles::picture("jpeg", {70, 40}), "jpeg", {70, 40});
    row("progressive jpeg", SampleFiles::progressiveJpeg({70, 40}), "jpeg", {70, 40});
    row("bmp", SampleFiles::picture("bmp", {70, 40}), "bmp", {70, 40});
    QByteArray topDown = SampleFiles::picture("bmp", {70, 40});
    topDown.replace(22, 4, bytes("d8ffffff"));
    row("bmp from the top", topDown, "bmp", {70, 40});
    row("old bmp", "BM" + bytes("000000000000000000000000 0c000000 4600 2800 0100 1800"), "bmp", {70, 40});
    row("gif", "GIF89a" + bytes("4600 2800 000000"), "gif", {70, 40});
    row("lossy webp", "RIFF" + bytes("00000000") + "WEBPVP8 " + bytes("00000000 000000 9d012a 4600 2840"), "webp",
        {70, 40});
    row("lossless webp", "RIFF" + bytes("00000000") + "WEBPVP8L" + bytes("00000000 2f 45c00900 0000000000"), "webp",
        {70, 40});
    row("extended webp", "RIFF" + bytes("00000000") + "WEBPVP8X" + bytes("0a000000 00000000 450000 270000"), "webp",
        {70, 40});
    row("little-endian tiff",
        "II" + bytes("2a00 08000000 0200 0001 0300 01000000 46000000 0101 0400 01000000 28000000"), "tiff", {70, 40});
    row("big-endian tiff", "MM" + bytes("002a 00000008 0002 0100 0003 00000001 00460000 0101 0004 00000001 00000028"),
        "tiff", {70, 40});
    row("icon", bytes("00000100 0100 20 10 00 00 0100 2000 00000000 16000000"), "ico", {32, 16});
    row("large icon", bytes("00000100 0100 00 00 00 00 0100 2000 00000000 16000000"), "ico", {256, 256});
}

void ImageHeaderTest::each_format_states_its_size()
{
    QFETCH(QByteArray, contents);
    const auto header = headerOf(contents);
    QVERIFY(header);
    QTEST(header->format, "format");
    QTEST(header->size, "size");
}

void ImageHeaderTest::the_orientation_is_not_applied()
{
    QCOMPARE(headerOf(SampleFiles::turnedJpeg({70, 40}, 6))->size, QSize(70, 40));
}

void ImageHeaderTest::only_what_can_be_read_row_by_row_is_streamed()
{
    QVERIFY(headerOf(SampleFiles::picture("jpeg", {70, 40}))->streamed);
    QVERIFY(headerOf(SampleFiles::picture("png", {70, 40}))->streamed);
    QVERIFY(!headerOf(SampleFiles::progressiveJpeg({70, 40}))->streamed);
    QVERIFY(!headerOf(SampleFiles::picture("bmp", {70, 40}))->streamed);
    QByteArray interlaced = SampleFiles::pngHeader({70, 40});
    interlaced[28] = 1;
    QVERIFY(!headerOf(interlaced)->streamed);
    // One scan for each component: all of them are kept until the last has come.
    QByteArray apart = SampleFiles::picture("jpeg", {70, 40});
    const auto scan = apart.indexOf("\xff\xda");
    QVERIFY(scan > 0);
    apart[scan + 4] = 1;
    QVERIFY(!headerOf(apart)->streamed);
    // Without a scan nothing is known of them.
    QVERIFY(!headerOf(apart.left(scan))->streamed);
    QCOMPARE(headerOf(apart.left(scan))->size, QSize(70, 40));
}

void ImageHeaderTest::a_size_beyond_all_bounds_is_stated_as_it_is()
{
    QCOMPARE(headerOf(SampleFiles::pngHeader({60'000, 60'000}))->size, QSize(60'000, 60'000));
    QCOMPARE(headerOf(SampleFiles::pngHeader({0, 7}))->size, QSize(0, 7));
}

void ImageHeaderTest::a_side_that_no_int_can_hold_is_no_size()
{
    QVERIFY(!headerOf(SampleFiles::pngHeader({-1, 7})));
}

void ImageHeaderTest::what_is_no_image_has_no_header_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("Dear reader,\nthis is no image, whatever it is named.\n");
    QTest::newRow("svg") << QByteArray("<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>");
    QTest::newRow("pdf") << QByteArray("%PDF-1.4\n");
    QTest::newRow("png without a header") << QByteArray("\x89PNG\r\n\x1a\n");
    QTest::newRow("jpeg without a frame") << QByteArray("\xff\xd8\xff\xd9", 4);
    QTest::newRow("zeros") << QByteArray(4096, '\0');
}

void ImageHeaderTest::what_is_no_image_has_no_header()
{
    QFETCH(QByteArray, contents);
    QVERIFY(!headerOf(contents));
}

void ImageHeaderTest::a_jpeg_of_endless_segments_is_not_followed()
{
    QByteArray jpeg = SampleFiles::picture("jpeg", {70, 40});
    const QByteArray comment = bytes("fffe0002");
    jpeg.insert(2, comment.repeated(600));
    QVERIFY(!headerOf(jpeg));
}

void ImageHeaderTest::every_shorter_piece_of_a_header_is_survived()
{
    const QByteArray whole[] = {SampleFiles::picture("png", {70, 40}), SampleFiles::picture("jpeg", {70, 40}),
                                SampleFiles::picture("bmp", {70, 40}),
                                "MM" + bytes("002a 00000008 0002 0100 0003 00000001 00460000 0101 0004 00000001")};
    for (const QByteArray &contents : whole) {
        for (qsizetype length = 0;
             length < std::min<qsizetype>(contents.size(), contents.startsWith("\xff\xd8") ? 700 : 64); ++length) {
            const auto header = headerOf(contents.left(length));
            if (header)
                QCOMPARE(header->size, QSize(70, 40));
        }
    }
}

QTEST_MAIN(ImageHeaderTest)
#include "ImageHeaderTest.moc"
