// SPDX-License-Identifier: MIT
#include "platform/linux/thumbnailer/SvgThumbnailer.h"

#include "platform/linux/thumbnailer/ImageThumbnailer.h"
#include "tests/support/SampleFiles.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QTest>

#include <sys/stat.h>

class SvgThumbnailerTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void a_drawing_fills_the_bound_with_its_aspect();
    void a_drawing_without_a_view_box_takes_its_size();
    void an_enormous_drawing_is_drawn_small();
    void a_linked_picture_is_left_out_and_never_opened();
    void an_embedded_picture_stays();
    void a_drawing_embedded_as_a_picture_is_left_out();
    void embedded_pictures_beyond_the_bound_are_left_out();
    void instructions_and_entity_declarations_are_left_out();
    void elements_used_again_and_again_are_refused();
    void an_element_that_uses_itself_is_refused();
    void too_deep_a_drawing_is_refused();
    void what_is_no_drawing_gives_nothing();
};

namespace {

QByteArray svg(const QByteArray &content, const QByteArray &attributes = "viewBox='0 0 200 100'")
{
    return "<?xml version='1.0'?><svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' " +
           attributes + '>' + content + "</svg>";
}

QByteArray imageElement(const QByteArray &link)
{
    return "<image width='200' height='100' xlink:href='" + link + "'/>";
}

QByteArray dataLink(const QByteArray &type, const QByteArray &bytes)
{
    return "data:" + type + ";base64," + bytes.toBase64();
}

} // namespace

void SvgThumbnailerTest::initTestCase()
{
    silenceImageReaders();
}

void SvgThumbnailerTest::a_drawing_fills_the_bound_with_its_aspect()
{
    const auto image = renderSvg(svg("<rect width='100' height='100' fill='red'/>"), {72, 72});
    QVERIFY(image);
    QCOMPARE(image->size(), QSize(72, 36));
    QCOMPARE(image->pixelColor(18, 18), QColor(Qt::red));
    QCOMPARE(image->pixelColor(54, 18).alpha(), 0);
}

void SvgThumbnailerTest::a_drawing_without_a_view_box_takes_its_size()
{
    const auto image = renderSvg(svg("<rect width='9' height='9'/>", "width='10' height='20'"), {72, 72});
    QVERIFY(image);
    QCOMPARE(image->size(), QSize(36, 72));
}

void SvgThumbnailerTest::an_enormous_drawing_is_drawn_small()
{
    const auto image = renderSvg(svg("<rect width='100000' height='100000' fill='red'/>",
                                     "width='100000' height='100000' viewBox='0 0 100000 100000'"),
                                 {72, 72});
    QVERIFY(image);
    QCOMPARE(image->size(), QSize(72, 72));
    QCOMPARE(image->pixelColor(36, 36), QColor(Qt::red));
}

void SvgThumbnailerTest::a_linked_picture_is_left_out_and_never_opened()
{
    const SampleFiles samples;
    const QByteArray fifo = samples.path("fifo");
    QCOMPARE(::mkfifo(fifo.constData(), 0600), 0);
    const QByteArray picture = samples.file("a.png", SampleFiles::picture("png", {20, 10}));
    for (const QByteArray &link : {fifo, picture, "file://" + picture, QByteArray("http://127.0.0.1:1/a.png")}) {
        const auto image = renderSvg(svg(imageElement(link)), {72, 72});
        QVERIFY(image);
        QCOMPARE(image->pixelColor(18, 18).alpha(), 0);
    }
}

void SvgThumbnailerTest::an_embedded_picture_stays()
{
    const auto image =
        renderSvg(svg(imageElement(dataLink("image/png", SampleFiles::picture("png", {20, 10})))), {72, 72});
    QVERIFY(image);
    QCOMPARE(image->pixelColor(10, 18), QColor(Qt::red));
    QCOMPARE(image->pixelColor(60, 18), QColor(Qt::blue));
}

void SvgThumbnailerTest::a_drawing_embedded_as_a_picture_is_left_out()
{
    const QByteArray inner = svg("<rect width='200' height='100' fill='red'/>");
    QVERIFY(!harmlessSvg(svg(imageElement(dataLink("image/png", inner)))).contains(":image "));
}

void SvgThumbnailerTest::embedded_pictures_beyond_the_bound_are_left_out()
{
    const QByteArray small = imageElement(dataLink("image/png", SampleFiles::picture("png", {20, 10})));
    const QByteArray enormous = imageElement(dataLink("image/png", SampleFiles::picture("png", {4100, 4100})));
    const QByteArray half = imageElement(dataLink("image/png", SampleFiles::picture("png", {3000, 3000})));
    QCOMPARE(harmlessSvg(svg(enormous + small)).count(":image "), 1);
    QCOMPARE(harmlessSvg(svg(half + half + small)).count(":image "), 2);
}

void SvgThumbnailerTest::instructions_and_entity_declarations_are_left_out()
{
    const QByteArray drawing = "<?xml version='1.0'?><?xml-stylesheet type='text/css' href='/etc/passwd'?>"
                               "<!DOCTYPE svg [<!ENTITY secret SYSTEM 'file:///etc/passwd'><!ENTITY id 'named'>]>"
                               "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 9 9'><g id='&id;'/></svg>";
    const QByteArray harmless = harmlessSvg(drawing);
    QVERIFY(harmless.contains("id=\"named\""));
    QVERIFY(!harmless.contains("passwd"));
    QVERIFY(!harmless.contains("<?xml-stylesheet"));
    QVERIFY(!harmless.contains("ENTITY"));
}

void SvgThumbnailerTest::elements_used_again_and_again_are_refused()
{
    // Each level draws the level below ten times, which makes a million rectangles.
    QByteArray levels = "<g id='l0'><rect width='1' height='1'/></g>";
    const auto level = [](int number) {
        const QByteArray use = "<use xlink:href='#l" + QByteArray::number(number - 1) + "'/>";
        return "<g id='l" + QByteArray::number(number) + "'>" + use.repeated(10) + "</g>";
    };
    for (int number = 1; number <= 2; ++number)
        levels += level(number);
    QVERIFY(!harmlessSvg(svg(levels)).isEmpty());
    for (int number = 3; number <= 6; ++number)
        levels += level(number);
    QVERIFY(harmlessSvg(svg(levels)).isEmpty());
    QVERIFY(!renderSvg(svg(levels), {72, 72}));
}

void SvgThumbnailerTest::an_element_that_uses_itself_is_refused()
{
    QVERIFY(harmlessSvg(svg("<g id='a'><use xlink:href='#b'/></g><g id='b'><use xlink:href='#a'/></g>")).isEmpty());
}

void SvgThumbnailerTest::too_deep_a_drawing_is_refused()
{
    const auto nested = [](int depth) {
        return svg(QByteArray("<g>").repeated(depth) + "<rect/>" + QByteArray("</g>").repeated(depth));
    };
    QVERIFY(!harmlessSvg(nested(100)).isEmpty());
    QVERIFY(harmlessSvg(nested(300)).isEmpty());
    QVERIFY(harmlessSvg(nested(100'000)).isEmpty());
    QByteArray chain = "<g id='u0'/>";
    for (int i = 1; i < 1000; ++i)
        chain += "<use id='u" + QByteArray::number(i) + "' xlink:href='#u" + QByteArray::number(i - 1) + "'/>";
    QVERIFY(harmlessSvg(svg(chain)).isEmpty());
}

void SvgThumbnailerTest::what_is_no_drawing_gives_nothing()
{
    for (const QByteArray &contents : {QByteArray(), QByteArray("hello"), QByteArray("<html/>"), QByteArray("<svg>"),
                                       QByteArray("<svg xmlns='http://www.w3.org/2000/svg'"), QByteArray(999, '\0')})
        QVERIFY2(!renderSvg(contents, {72, 72}), contents.constData());
}

PARKLET_TEST(SvgThumbnailerTest)
#include "SvgThumbnailerTest.moc"
