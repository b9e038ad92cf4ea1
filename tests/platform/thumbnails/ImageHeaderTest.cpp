// SPDX-License-Identifier: MIT
#include "platform/linux/thumbnailer/ImageHeader.h"

#include "tests/support/SampleFiles.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QTest>
#include <QtEndian>

#include <functional>

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
    void a_heif_states_the_size_of_its_picture_and_not_of_others_in_it();
    void a_heif_that_does_not_state_its_size_has_no_header_data();
    void a_heif_that_does_not_state_its_size_has_no_header();
    void every_shorter_piece_of_a_boxed_header_has_none();
    void boxes_that_lie_about_their_size_are_survived();

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

QByteArray big(quint32 number)
{
    QByteArray four(4, '\0');
    qToBigEndian(number, four.data());
    return four;
}

QByteArray box(const char *type, const QByteArray &content)
{
    return big(quint32(content.size()) + 8) + type + content;
}

// A property box with the width and height of an item.
QByteArray ispe(quint32 width, quint32 height)
{
    return box("ispe", big(0) + big(width) + big(height));
}

// A file as cameras write it: item 1 is a tile of the picture, item 2 the picture, and item 3 its thumbnail.
struct Heif {
    QByteArray ftyp = box("ftyp", "heic" + big(0) + "mif1heic");
    QByteArray pitm = box("pitm", bytes("00000000 0002"));
    QByteArray properties = box("hvcC", bytes("0102030405")) + ispe(32, 32) + ispe(70, 40) + ispe(7, 4);
    QByteArray associations = bytes("00000000 00000003 0001 02 8102 0002 02 8103 0003 01 04");

    QByteArray meta() const
    {
        const QByteArray hdlr = box("hdlr", bytes("00000000 00000000") + "pict" + QByteArray(13, '\0'));
        return box("meta", big(0) + hdlr + pitm + box("iprp", box("ipco", properties) + box("ipma", associations)));
    }
    QByteArray whole() const { return ftyp + meta() + box("mdat", QByteArray(100, 'x')); }
};

QByteArray jpeg2000(const QByteArray &ihdr)
{
    return bytes("0000000c 6a502020 0d0a870a") + box("ftyp", "jp2 " + big(0) + "jp2 ") +
           box("jp2h", ihdr + box("colr", bytes("01000000000010"))) + box("jp2c", bytes("ff4fff51"));
}

// The header that libheif writes for an AVIF of 300 by 200 pixels.
const QByteArray kAvif = bytes("0000001c667479706176696600000000617669666d6966316d696166000000ea6d65746100000000"
                               "0000002168646c72000000000000000070696374000000000000000000000000000000000e706974"
                               "6d00000000000100000022696c6f630000000044400001000100000000010e000100000000000000"
                               "670000002369696e6600000000000100000015696e6665020000000001000061763031000000006a"
                               "697072700000004b6970636f00000013636f6c726e636c78000200020006800000000c6176314381"
                               "000c000000001469737065000000000000012c000000c80000001070697869000000000308080800"
                               "00001769706d61000000000000000100010481820384");

const QByteArray kIhdr = box("ihdr", big(40) + big(70) + bytes("0003 07 07 00 00"));

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
    row("heic", Heif().whole(), "heif", {70, 40});
    Heif avif;
    avif.ftyp = box("ftyp", "avif" + big(0) + "avifmif1miaf");
    row("avif", avif.whole(), "avif", {70, 40});
    avif.ftyp = box("ftyp", "mif1" + big(0) + "mif1miafavif");
    row("avif by another brand", avif.whole(), "avif", {70, 40});
    row("avif as it is written", kAvif, "avif", {300, 200});
    row("jpeg 2000", jpeg2000(kIhdr), "jp2", {70, 40});
    row("icon of two pictures",
        bytes("00000100 0200 20 10 00 00 0100 2000 00000000 26000000"
              "40 40 00 00 0100 2000 00000000 26000000"),
        "ico", {32, 16});
    row("tiff of two pages",
        "II" + bytes("2a00 08000000 0200 0001 0300 01000000 46000000 0101 0400 01000000 28000000 26000000"
                     "0200 0001 0300 01000000 07000000 0101 0400 01000000 04000000 00000000"),
        "tiff", {70, 40});
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
    // With one scan for each component, the decoder keeps all of them until the last has arrived.
    QByteArray apart = SampleFiles::picture("jpeg", {70, 40});
    const auto scan = apart.indexOf("\xff\xda");
    QVERIFY(scan > 0);
    apart[scan + 4] = 1;
    QVERIFY(!headerOf(apart)->streamed);
    // Without a scan, their order is unknown.
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

void ImageHeaderTest::a_heif_states_the_size_of_its_picture_and_not_of_others_in_it()
{
    Heif tile;
    tile.pitm = box("pitm", bytes("00000000 0001"));
    QCOMPARE(headerOf(tile.whole())->size, QSize(32, 32));
    Heif last;
    last.pitm = box("pitm", bytes("00000000 0003"));
    QCOMPARE(headerOf(last.whole())->size, QSize(7, 4));
    // The numbers of items and properties have two sizes each.
    Heif wide;
    wide.pitm = box("pitm", bytes("01000000 00000002"));
    wide.associations = bytes("01000001 00000002 00000001 01 8002 00000002 02 8001 8003");
    QCOMPARE(headerOf(wide.whole())->size, QSize(70, 40));
    // The picture may be before its description, in a box whose size has eight bytes.
    const Heif usual;
    QCOMPARE(headerOf(usual.ftyp + big(1) + "mdat" + big(0) + big(116) + QByteArray(100, 'x') + usual.meta())->size,
             QSize(70, 40));
    // The last box may extend to the end of the file.
    QCOMPARE(headerOf(usual.ftyp + usual.meta() + big(0) + "mdat" + QByteArray(100, 'x'))->size, QSize(70, 40));
}

void ImageHeaderTest::a_heif_that_does_not_state_its_size_has_no_header_data()
{
    QTest::addColumn<QByteArray>("contents");
    const auto row = [](const char *name, const std::function<void(Heif &)> &change) {
        Heif heif;
        change(heif);
        QTest::newRow(name) << heif.whole();
    };
    row("film", [](Heif &heif) { heif.ftyp = box("ftyp", "isom" + big(0) + "isommp42"); });
    row("brand that is a version", [](Heif &heif) { heif.ftyp = box("ftyp", QByteArray("isommif1mp42")); });
    row("without a picture", [](Heif &heif) { heif.pitm.clear(); });
    row("picture of unknown properties", [](Heif &heif) { heif.pitm = box("pitm", bytes("00000000 0009")); });
    row("property that is not there", [](Heif &heif) { heif.associations = bytes("00000000 00000001 0002 01 09"); });
    row("property of no number", [](Heif &heif) { heif.associations = bytes("00000000 00000001 0002 01 00"); });
    row("only other properties", [](Heif &heif) { heif.associations = bytes("00000000 00000001 0002 01 01"); });
    row("endless associations", [](Heif &heif) { heif.associations = bytes("00000000 ffffffff 0001 00"); });
    row("short size", [](Heif &heif) {
        heif.properties = box("ispe", big(0) + big(70));
        heif.associations = bytes("00000000 00000001 0002 01 01");
    });
    row("side that no int can hold", [](Heif &heif) {
        heif.properties = ispe(0x80000000, 40);
        heif.associations = bytes("00000000 00000001 0002 01 01");
    });
    QTest::newRow("jpeg 2000 without a size") << jpeg2000({});
    QTest::newRow("jpeg 2000 with half a size") << jpeg2000(box("ihdr", big(40)));
    QTest::newRow("jpeg 2000 with a side that no int can hold") << jpeg2000(box("ihdr", big(0x80000000) + big(70)));
}

void ImageHeaderTest::a_heif_that_does_not_state_its_size_has_no_header()
{
    QFETCH(QByteArray, contents);
    QVERIFY(!headerOf(contents));
}

void ImageHeaderTest::every_shorter_piece_of_a_boxed_header_has_none()
{
    const Heif heif;
    const QByteArray described = heif.ftyp + heif.meta();
    for (qsizetype length = 0; length < described.size(); ++length)
        QVERIFY(!headerOf(described.left(length)));
    // The description of the picture is enough.
    QCOMPARE(headerOf(described)->size, QSize(70, 40));

    const QByteArray picture = jpeg2000(kIhdr);
    const qsizetype end = picture.indexOf("jp2c") - 4;
    for (qsizetype length = 0; length < end; ++length)
        QVERIFY(!headerOf(picture.left(length)));
    QCOMPARE(headerOf(picture.left(end))->size, QSize(70, 40));
}

void ImageHeaderTest::boxes_that_lie_about_their_size_are_survived()
{
    for (const QByteArray &contents : {Heif().whole(), jpeg2000(kIhdr)}) {
        for (qsizetype at = 0; at + 4 <= contents.size(); ++at) {
            for (const quint32 lie : {0U, 1U, 7U, 0x7fffffffU, 0xffffffffU}) {
                QByteArray changed = contents;
                changed.replace(at, 4, big(lie));
                const auto header = headerOf(changed);
                QVERIFY(!header || (header->size.width() >= 0 && header->size.height() >= 0));
            }
        }
    }
    // This 64-bit size is larger than any file.
    const Heif heif;
    QVERIFY(!headerOf(heif.ftyp + big(1) + "free" + bytes("ffffffffffffffff") + heif.meta()));
}

PARKLET_TEST(ImageHeaderTest)
#include "ImageHeaderTest.moc"
