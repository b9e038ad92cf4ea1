// SPDX-License-Identifier: MIT
#include "shelf/ShelfGeometry.h"

#include "platform/ThumbnailGenerator.h"
#include "tests/support/TestProgram.h"

#include <QTest>

class ShelfGeometryTest : public QObject {
    Q_OBJECT

private slots:
    void the_shelf_stands_where_edge_alignment_and_items_say_data();
    void the_shelf_stands_where_edge_alignment_and_items_say();
    void a_shelf_cut_to_the_screen_keeps_the_place_of_the_uncut_one();
    void a_column_has_its_header_across_the_top();
    void a_row_has_its_header_as_a_column_at_the_left();
    void a_tile_reserves_room_for_its_name_unless_names_are_hidden();
    void the_views_of_a_tile_stand_in_their_places();
    void a_thumbnail_fits_the_item_size_data();
    void a_thumbnail_fits_the_item_size();
    void the_cursor_shelf_stands_beside_the_pointer_inside_the_screen_data();
    void the_cursor_shelf_stands_beside_the_pointer_inside_the_screen();
    void turning_a_frame_over_twice_gives_it_back();
};

namespace {

constexpr double kScroller = 15;
const QRectF kScreen(0, 0, 1280, 800);
// A visible frame whose origin is not 0 in either axis: a dock at the bottom, a second screen to the left.
const QRectF kOffset(100, 40, 1000, 700);

} // namespace

void ShelfGeometryTest::the_shelf_stands_where_edge_alignment_and_items_say_data()
{
    QTest::addColumn<QRectF>("visible");
    QTest::addColumn<WindowEdge>("edge");
    QTest::addColumn<WindowAlignment>("alignment");
    QTest::addColumn<double>("itemSize");
    QTest::addColumn<double>("reserve");
    QTest::addColumn<int>("items");
    QTest::addColumn<QRectF>("expected");

    QTest::newRow("empty, right, centre")
        << kScreen << WindowEdge::Right << WindowAlignment::Center << 72.0 << 30.0 << 0 << QRectF(1160, 318, 116, 164);
    QTest::newRow("one item is as high as none")
        << kScreen << WindowEdge::Right << WindowAlignment::Center << 72.0 << 30.0 << 1 << QRectF(1160, 318, 116, 164);
    QTest::newRow("three items") << kScreen << WindowEdge::Right << WindowAlignment::Center << 72.0 << 30.0 << 3
                                 << QRectF(1160, 210, 116, 380);
    QTest::newRow("ten items on a high screen")
        << QRectF(0, 0, 1280, 2000) << WindowEdge::Right << WindowAlignment::Center << 72.0 << 30.0 << 10
        << QRectF(1160, 432, 116, 1136);
    QTest::newRow("an eleventh item scrolls")
        << QRectF(0, 0, 1280, 2000) << WindowEdge::Right << WindowAlignment::Center << 72.0 << 30.0 << 11
        << QRectF(1160, 432, 116, 1136);
    QTest::newRow("left, start") << kOffset << WindowEdge::Left << WindowAlignment::Start << 72.0 << 30.0 << 0
                                 << QRectF(104, 740 - 164 - 20, 116, 164);
    QTest::newRow("left, centre") << kOffset << WindowEdge::Left << WindowAlignment::Center << 72.0 << 30.0 << 0
                                  << QRectF(104, 390 - 82, 116, 164);
    QTest::newRow("left, end") << kOffset << WindowEdge::Left << WindowAlignment::End << 72.0 << 30.0 << 0
                               << QRectF(104, 60, 116, 164);
    QTest::newRow("right, start") << kOffset << WindowEdge::Right << WindowAlignment::Start << 72.0 << 30.0 << 0
                                  << QRectF(980, 556, 116, 164);
    QTest::newRow("right, end") << kOffset << WindowEdge::Right << WindowAlignment::End << 72.0 << 30.0 << 0
                                << QRectF(980, 60, 116, 164);
    // A row with one tile: 94 + 51 wide, 72 + 30 + 28 + 15 high.
    QTest::newRow("top, start") << kOffset << WindowEdge::Top << WindowAlignment::Start << 72.0 << 30.0 << 0
                                << QRectF(120, 740 - 145 - 4, 145, 145);
    QTest::newRow("top, centre") << kOffset << WindowEdge::Top << WindowAlignment::Center << 72.0 << 30.0 << 0
                                 << QRectF(600 - 72.5, 591, 145, 145);
    QTest::newRow("top, end") << kOffset << WindowEdge::Top << WindowAlignment::End << 72.0 << 30.0 << 0
                              << QRectF(1100 - 145 - 20, 591, 145, 145);
    QTest::newRow("bottom, start, names hidden, two items")
        << kOffset << WindowEdge::Bottom << WindowAlignment::Start << 72.0 << 16.0 << 2 << QRectF(120, 44, 239, 131);
    QTest::newRow("bottom, end") << kOffset << WindowEdge::Bottom << WindowAlignment::End << 72.0 << 30.0 << 0
                                 << QRectF(935, 44, 145, 145);
    QTest::newRow("larger tiles") << kScreen << WindowEdge::Right << WindowAlignment::Center << 100.0 << 30.0 << 2
                                  << QRectF(1132, 236, 144, 328);
    QTest::newRow("an unknown edge is the right one")
        << kScreen << WindowEdge(9) << WindowAlignment::Center << 72.0 << 30.0 << 0 << QRectF(1160, 318, 116, 164);
    QTest::newRow("a negative edge is the right one")
        << kScreen << WindowEdge(-1) << WindowAlignment::Center << 72.0 << 30.0 << 0 << QRectF(1160, 318, 116, 164);
    QTest::newRow("an unknown alignment is the centre")
        << kScreen << WindowEdge::Right << WindowAlignment(7) << 72.0 << 30.0 << 0 << QRectF(1160, 318, 116, 164);
    QTest::newRow("an unknown alignment is the centre along x")
        << kOffset << WindowEdge::Bottom << WindowAlignment(-3) << 72.0 << 30.0 << 0 << QRectF(527.5, 44, 145, 145);
}

void ShelfGeometryTest::the_shelf_stands_where_edge_alignment_and_items_say()
{
    QFETCH(QRectF, visible);
    QFETCH(WindowEdge, edge);
    QFETCH(WindowAlignment, alignment);
    QFETCH(double, itemSize);
    QFETCH(double, reserve);
    QFETCH(int, items);
    QFETCH(QRectF, expected);
    QCOMPARE(shelfFrame(visible, edge, alignment, itemSize, reserve, items, kScroller), expected);
}

void ShelfGeometryTest::a_shelf_cut_to_the_screen_keeps_the_place_of_the_uncut_one()
{
    // Ten tiles are 1136 high; the screen leaves 792.
    QCOMPARE(shelfFrame(kScreen, WindowEdge::Right, WindowAlignment::Center, 72, 30, 10, kScroller),
             QRectF(1160, 400 - 568, 116, 792));
    // With start alignment the frame extends below the visible frame.
    QCOMPARE(shelfFrame(kScreen, WindowEdge::Right, WindowAlignment::Start, 72, 30, 10, kScroller),
             QRectF(1160, 800 - 1136 - 20, 116, 792));
    QCOMPARE(shelfFrame(kScreen, WindowEdge::Right, WindowAlignment::End, 72, 30, 10, kScroller),
             QRectF(1160, 20, 116, 792));
    // The width of a row is limited: 94 x 10 + 51 = 991 fits 992, but not 592.
    QCOMPARE(shelfFrame(QRectF(0, 0, 1000, 800), WindowEdge::Bottom, WindowAlignment::Center, 72, 30, 10, kScroller),
             QRectF(4.5, 4, 991, 145));
    QCOMPARE(shelfFrame(QRectF(0, 0, 600, 800), WindowEdge::Bottom, WindowAlignment::Center, 72, 30, 10, kScroller),
             QRectF(300 - 495.5, 4, 592, 145));
}

void ShelfGeometryTest::a_column_has_its_header_across_the_top()
{
    const ShelfLayout layout = shelfLayout(QSizeF(116, 164), Qt::Vertical);
    QCOMPARE(layout.headerBar, QRectF(0, 8, 116, 24));
    QCOMPARE(layout.gearBtn, QRectF(8, 2, 20, 20));
    QCOMPARE(layout.selectAllBtn, QRectF(48, 2, 20, 20));
    QCOMPARE(layout.trashBtn, QRectF(116 - 8 - 20, 2, 20, 20));
    QCOMPARE(layout.sepLine, QRectF(8, 34, 100, 1));
    QCOMPARE(layout.scrollView, QRectF(0, 37, 116, 164 - 37 - 8));
}

void ShelfGeometryTest::a_row_has_its_header_as_a_column_at_the_left()
{
    const ShelfLayout layout = shelfLayout(QSizeF(239, 131), Qt::Horizontal);
    QCOMPARE(layout.headerBar, QRectF(0, 0, 36, 131));
    QCOMPARE(layout.trashBtn, QRectF(8, 10, 20, 20));
    QCOMPARE(layout.selectAllBtn, QRectF(8, 38, 20, 20));
    QCOMPARE(layout.gearBtn, QRectF(8, 131 - 10 - 20, 20, 20));
    QCOMPARE(layout.sepLine, QRectF(36, 8, 1, 115));
    QCOMPARE(layout.scrollView, QRectF(39, 8, 200, 115));
}

void ShelfGeometryTest::a_tile_reserves_room_for_its_name_unless_names_are_hidden()
{
    QCOMPARE(tileSize(72, FileNameDisplay::UnderIcon), QSizeF(88, 102));
    QCOMPARE(tileSize(72, FileNameDisplay::Hidden), QSizeF(88, 88));
    QCOMPARE(tileSize(72, FileNameDisplay::OnHover), QSizeF(88, 102));
    QCOMPARE(tileSize(72, FileNameDisplay(9)), QSizeF(88, 102));
    QCOMPARE(tileSize(100, FileNameDisplay::UnderIcon), QSizeF(116, 130));
}

void ShelfGeometryTest::the_views_of_a_tile_stand_in_their_places()
{
    const TileLayout named = tileLayout(QSizeF(88, 102), FileNameDisplay::UnderIcon);
    QCOMPARE(named.imageView, QRectF(4, 27, 80, 67));
    QCOMPARE(named.nameLabel, QRectF(2, -5, 84, 26));
    QCOMPARE(named.removeBtn, QRectF(68, 82, 18, 18));

    // With names on hover the space stays reserved, so the image does not move.
    QCOMPARE(tileLayout(QSizeF(88, 102), FileNameDisplay::OnHover).imageView, named.imageView);
    QCOMPARE(tileLayout(QSizeF(88, 102), FileNameDisplay::OnHover).nameLabel, named.nameLabel);

    const TileLayout hidden = tileLayout(QSizeF(88, 88), FileNameDisplay::Hidden);
    QCOMPARE(hidden.imageView, QRectF(4, 8, 80, 72));
    QCOMPARE(hidden.nameLabel, QRectF(2, -5, 84, 0));
    QCOMPARE(hidden.removeBtn, QRectF(68, 68, 18, 18));

    // The image of a tile that is too low has height 0, not a negative one.
    QCOMPARE(tileLayout(QSizeF(88, 30), FileNameDisplay::UnderIcon).imageView.height(), 0.0);
}

void ShelfGeometryTest::a_thumbnail_fits_the_item_size_data()
{
    QTest::addColumn<double>("width");
    QTest::addColumn<double>("height");
    QTest::addColumn<QSizeF>("expected");
    QTest::newRow("40.5 rounds up") << 1920.0 << 1080.0 << QSizeF(72, 41);
    QTest::newRow("portrait") << 1080.0 << 1920.0 << QSizeF(41, 72);
    QTest::newRow("square") << 500.0 << 500.0 << QSizeF(72, 72);
    QTest::newRow("rounds down") << 3000.0 << 1000.0 << QSizeF(72, 24);
    QTest::newRow("very wide") << 100000.0 << 1.0 << QSizeF(72, 0);
    QTest::newRow("no width") << 0.0 << 100.0 << QSizeF(72, 72);
    QTest::newRow("no height") << 100.0 << 0.0 << QSizeF(72, 72);
    QTest::newRow("negative") << -5.0 << 100.0 << QSizeF(72, 72);
}

void ShelfGeometryTest::a_thumbnail_fits_the_item_size()
{
    QFETCH(double, width);
    QFETCH(double, height);
    QFETCH(QSizeF, expected);
    QCOMPARE(fittedThumbnailSize(72, QSizeF(width, height)), expected);
    QCOMPARE(fittedThumbnailSize(72, std::nullopt), QSizeF(72, 72));
}

void ShelfGeometryTest::the_cursor_shelf_stands_beside_the_pointer_inside_the_screen_data()
{
    QTest::addColumn<QPointF>("pointer");
    QTest::addColumn<QRectF>("visible");
    QTest::addColumn<QPointF>("expected");
    QTest::newRow("beside the pointer") << QPointF(500, 500) << kScreen << QPointF(524, 396);
    QTest::newRow("bottom right corner") << QPointF(1279, 0) << kScreen << QPointF(1280 - 88 - 4, 4);
    QTest::newRow("near the top, below the pointer") << QPointF(500, 799) << kScreen << QPointF(524, 695);
    QTest::newRow("left of the visible frame") << QPointF(0, 500) << QRectF(100, 0, 600, 800) << QPointF(104, 396);
    QTest::newRow("above the visible frame") << QPointF(500, 800) << QRectF(0, 0, 1280, 600) << QPointF(524, 508);
    QTest::newRow("too small a frame: the upper bound wins")
        << QPointF(40, 40) << QRectF(0, 0, 60, 60) << QPointF(-32, -32);
}

void ShelfGeometryTest::the_cursor_shelf_stands_beside_the_pointer_inside_the_screen()
{
    QFETCH(QPointF, pointer);
    QFETCH(QRectF, visible);
    QFETCH(QPointF, expected);
    QCOMPARE(cursorShelfFrame(pointer, visible), QRectF(expected, QSizeF(88, 88)));
}

void ShelfGeometryTest::turning_a_frame_over_twice_gives_it_back()
{
    const QRectF frame(1160, 318, 116, 164);
    QCOMPARE(flipped(frame, 1000), QRectF(1160, 518, 116, 164));
    QCOMPARE(flipped(flipped(frame, 1000), 1000), frame);
    QCOMPARE(flipped(QPointF(3, 10), 100), QPointF(3, 90));
    QCOMPARE(wholePoints(QRectF(1.4, 2.5, 3.6, 4.0)), QRect(1, 3, 4, 4));
}

PARKLET_GUILESS_TEST(ShelfGeometryTest)
#include "ShelfGeometryTest.moc"
