// SPDX-License-Identifier: MIT
#include "platform/common/DragPicture.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

DraggingItem item(const QSize &size, const QColor &color, double scale = 1)
{
    QPixmap picture(size);
    picture.setDevicePixelRatio(scale);
    picture.fill(color);
    return {QUrl(u"file:///a"_s), QRectF(0, 0, 72, 72), picture};
}

const DragPictureStyle kPlain{.scale = 1, .accent = Qt::blue, .blends = true};

class DragPictureTest : public QObject {
    Q_OBJECT

private slots:
    void one_item_is_its_contents_fitted_into_its_frame();
    void a_picture_is_crisp_at_the_screens_scale();
    void the_hot_spot_is_where_the_contents_were_grabbed();
    void the_hot_spot_never_leaves_the_picture();
    void several_items_fan_out_behind_the_first();
    void no_more_than_four_items_are_drawn();
    void a_badge_in_the_accent_colour_counts_several_items();
    void without_blending_every_pixel_is_opaque_or_absent();
    void an_opaque_edge_keeps_its_colour();
    void an_item_without_contents_still_has_a_picture();
    void contents_lie_in_the_middle_of_their_frame();

private:
    static bool contains(const QImage &image, const QColor &color)
    {
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixelColor(x, y) == color)
                    return true;
            }
        }
        return false;
    }
};

void DragPictureTest::one_item_is_its_contents_fitted_into_its_frame()
{
    const DragPicture wide = dragPicture({item({144, 72}, Qt::red)}, {36, 36}, kPlain);
    QCOMPARE(wide.pixmap.size(), QSize(72, 36));
    QCOMPARE(wide.pixmap.toImage().pixelColor(36, 18), QColor(Qt::red));
    QCOMPARE(dragPicture({item({10, 40}, Qt::red)}, {}, kPlain).pixmap.size(), QSize(18, 72));
}

void DragPictureTest::a_picture_is_crisp_at_the_screens_scale()
{
    const DragPicture picture = dragPicture({item({144, 144}, Qt::red, 2)}, {}, {.scale = 2, .accent = Qt::blue});
    QCOMPARE(picture.pixmap.size(), QSize(144, 144));
    QCOMPARE(picture.pixmap.devicePixelRatio(), 2.0);
}

void DragPictureTest::the_hot_spot_is_where_the_contents_were_grabbed()
{
    QCOMPARE(dragPicture({item({72, 72}, Qt::red)}, {10, 20}, kPlain).hotSpot, QPoint(10, 20));
    // A flat picture is in the middle of its frame.
    QCOMPARE(dragPicture({item({144, 72}, Qt::red)}, {10, 20}, kPlain).hotSpot, QPoint(10, 2));
}

void DragPictureTest::the_hot_spot_never_leaves_the_picture()
{
    QCOMPARE(dragPicture({item({72, 72}, Qt::red)}, {-9, 500}, kPlain).hotSpot, QPoint(0, 71));
}

void DragPictureTest::several_items_fan_out_behind_the_first()
{
    const QList<DraggingItem> items = {item({72, 72}, Qt::red), item({72, 72}, Qt::green)};
    const DragPicture picture = dragPicture(items, {36, 36}, kPlain);
    const QImage image = picture.pixmap.toImage();
    QVERIFY(picture.pixmap.width() > 72);
    QCOMPARE(image.pixelColor(picture.hotSpot), QColor(Qt::red));
    QVERIFY(contains(image, QColor(Qt::green)));
}

void DragPictureTest::no_more_than_four_items_are_drawn()
{
    QList<DraggingItem> items(4, item({72, 72}, Qt::red));
    items.append(item({72, 72}, Qt::green));
    QVERIFY(!contains(dragPicture(items, {}, kPlain).pixmap.toImage(), QColor(Qt::green)));
}

void DragPictureTest::a_badge_in_the_accent_colour_counts_several_items()
{
    const QList<DraggingItem> two(2, item({72, 72}, Qt::red));
    QVERIFY(contains(dragPicture(two, {}, kPlain).pixmap.toImage(), QColor(Qt::blue)));
    QVERIFY(!contains(dragPicture(two.first(1), {}, kPlain).pixmap.toImage(), QColor(Qt::blue)));
}

void DragPictureTest::without_blending_every_pixel_is_opaque_or_absent()
{
    const QList<DraggingItem> two(2, item({72, 72}, QColor(255, 0, 0, 200)));
    const QImage image = dragPicture(two, {}, {.scale = 1, .accent = Qt::blue, .blends = false}).pixmap.toImage();
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const int alpha = qAlpha(image.pixel(x, y));
            QVERIFY(alpha == 0 || alpha == 255);
        }
    }
}

void DragPictureTest::an_opaque_edge_keeps_its_colour()
{
    QImage image(2, 1, QImage::Format_ARGB32_Premultiplied);
    image.setPixelColor(0, 0, QColor(200, 100, 50, 200));
    image.setPixelColor(1, 0, QColor(200, 100, 50, 60));
    const QColor kept = hardEdged(image).pixelColor(0, 0);
    QVERIFY(qAbs(kept.red() - 200) <= 1 && qAbs(kept.green() - 100) <= 1 && qAbs(kept.blue() - 50) <= 1);
    QCOMPARE(kept.alpha(), 255);
    QCOMPARE(hardEdged(image).pixelColor(1, 0).alpha(), 0);
}

void DragPictureTest::an_item_without_contents_still_has_a_picture()
{
    const DragPicture picture = dragPicture({{QUrl(u"file:///a"_s), QRectF(0, 0, 72, 72), {}}}, {}, kPlain);
    QVERIFY(picture.pixmap.width() >= 2 && picture.pixmap.height() >= 2);
}

} // namespace

void DragPictureTest::contents_lie_in_the_middle_of_their_frame()
{
    DraggingItem wide = item({144, 72}, Qt::red);
    wide.frame.moveTo(20, 30);
    const QImage picture = framedPicture(wide, 2);
    QCOMPARE(picture.size(), QSize(144, 144));
    QCOMPARE(picture.deviceIndependentSize(), QSizeF(72, 72));
    QCOMPARE(picture.pixelColor(72, 34).alpha(), 0);
    QCOMPARE(picture.pixelColor(72, 38), QColor(Qt::red));
    QCOMPARE(picture.pixelColor(72, 105), QColor(Qt::red));
    QCOMPARE(picture.pixelColor(72, 109).alpha(), 0);
    QCOMPARE(framedPicture({wide.fileURL, wide.frame, QPixmap()}, 1).pixelColor(36, 36).alpha(), 0);
}

PARKLET_TEST(DragPictureTest)
#include "DragPictureTest.moc"
