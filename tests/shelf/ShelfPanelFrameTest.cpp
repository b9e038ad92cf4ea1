// SPDX-License-Identifier: MIT
#include "shelf/DropViews.h"
#include "shelf/ShelfItemView.h"
#include "shelf/ShelfScroller.h"
#include "shelf/ShelfViews.h"
#include "tests/shelf/PanelFixture.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QLabel>
#include <QProxyStyle>
#include <QScrollBar>
#include <QTest>

#include <array>
#include <cmath>
#include <limits>

// The frame of the panel, and of its views.
class ShelfPanelFrameTest : public QObject {
    Q_OBJECT

private slots:
    // Frame
    void an_empty_shelf_stands_at_the_right_edge();
    void three_items_make_it_380_high();
    void eleven_items_on_a_high_screen_make_it_1136_high();
    void a_row_of_two_without_names_stands_at_the_bottom();
    void a_row_has_room_for_a_scroller_of_the_desktops_width();
    void a_rows_scroller_takes_room_whatever_the_user_prefers();
    void reserved_space_is_respected_and_y_is_turned_over();
    void every_tile_can_be_scrolled_onto_the_screen_data();
    void every_tile_can_be_scrolled_onto_the_screen();
    void a_shelf_that_is_on_the_screen_scrolls_no_further();
    void a_row_ends_6_points_after_its_last_tile();
    void a_clamped_column_keeps_the_lower_end_of_the_longer_one();
    void the_label_of_an_empty_row_stands_10_points_below_its_middle();
    void without_a_main_screen_the_frame_stays_and_tiles_are_refreshed();
    void the_header_turns_with_the_edge();
    void tiles_stand_six_points_apart_and_centred();
    void an_eleventh_tile_scrolls();
    void the_scroller_over_the_tiles_shows_from_the_eleventh_on();
    void the_scroller_and_the_tiles_move_each_other();
};

namespace {

// While it exists, the style has scroll bars that cover their contents.
class OverlaidBars {
public:
    OverlaidBars() { QApplication::setStyle(new Style); }
    Q_DISABLE_COPY_MOVE(OverlaidBars)
    ~OverlaidBars() { QApplication::setStyle(before); }

private:
    class Style : public QProxyStyle {
    public:
        int pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const override
        {
            const bool isOfBars = metric == PM_ScrollBarExtent || metric == PM_ScrollView_ScrollBarOverlap;
            return isOfBars ? 11 : QProxyStyle::pixelMetric(metric, option, widget);
        }
        int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                      QStyleHintReturn *answer) const override
        {
            return hint == SH_ScrollBar_Transient ? 1 : QProxyStyle::styleHint(hint, option, widget, answer);
        }
    };

    const QString before = QApplication::style()->name();
};

// The scroller beside a column of tiles.
ShelfScroller *columnScroller(const ShelfPanel &panel)
{
    return panel.scrollView->findChild<ShelfScroller *>(QString(), Qt::FindDirectChildrenOnly);
}

} // namespace

void ShelfPanelFrameTest::an_empty_shelf_stands_at_the_right_edge()
{
    PanelFixture f;
    f.panel->updateFrame();
    QCOMPARE(f.panel->geometry(), QRect(1160, 318, 116, 164));
    QVERIFY(!f.panel->isVisible());
}

void ShelfPanelFrameTest::three_items_make_it_380_high()
{
    PanelFixture f;
    f.add(3);
    QCOMPARE(f.panel->geometry(), QRect(1160, 210, 116, 380));
    f.add(6);
    QCOMPARE(f.panel->height(), 792);
    f.add(5);
    // The frame is still that of ten tiles.
    QCOMPARE(f.panel->frame(), QRectF(1160, 400 - 568, 116, 792));
}

void ShelfPanelFrameTest::eleven_items_on_a_high_screen_make_it_1136_high()
{
    PanelFixture f;
    f.virtualPlatform.screens.screens = {Screen{QRectF(0, 0, 1280, 2000), QRectF(0, 0, 1280, 2000), 1.0}};
    f.add(11);
    QCOMPARE(f.panel->geometry(), QRect(1160, 432, 116, 1136));
}

void ShelfPanelFrameTest::a_row_of_two_without_names_stands_at_the_bottom()
{
    PanelFixture f;
    f.set(Settings::windowEdge.key, double(WindowEdge::Bottom));
    f.set(Settings::windowAlignment.key, double(WindowAlignment::Start));
    f.set(Settings::fileNameDisplay.key, double(FileNameDisplay::Hidden));
    f.add(2);
    const int height = 72 + 16 + 28 + qRound(f.virtualPlatform.appearance.legacyScrollerWidth());
    QCOMPARE(f.panel->geometry(), QRect(20, 800 - 4 - height, 239, height));
    QVERIFY(f.panel->stackView->isHorizontal());
}

void ShelfPanelFrameTest::a_row_has_room_for_a_scroller_of_the_desktops_width()
{
    PanelFixture f;
    f.virtualPlatform.appearance.scrollerWidth = 31;
    f.set(Settings::windowEdge.key, double(WindowEdge::Bottom));
    f.set(Settings::fileNameDisplay.key, double(FileNameDisplay::Hidden));
    f.add(2);
    QCOMPARE(f.panel->height(), 72 + 16 + 28 + 31);
}

void ShelfPanelFrameTest::a_rows_scroller_takes_room_whatever_the_user_prefers()
{
    const OverlaidBars preferred;
    ShelfScrollView view(31);
    view.setWidget(new QWidget);
    view.widget()->setMinimumWidth(500);
    view.resize(200, 131);
    view.show();
    view.setHorizontal(true);
    QCOMPARE(view.viewport()->height(), 100);
    QCOMPARE(view.horizontalScrollBar()->height(), 31);
}

void ShelfPanelFrameTest::reserved_space_is_respected_and_y_is_turned_over()
{
    PanelFixture f;
    // There is a bar at the top of the primary screen. A second screen, below and to the right, has the focus.
    f.virtualPlatform.screens.screens = {Screen{QRectF(0, 0, 1280, 800), QRectF(0, 30, 1280, 770), 1.0},
                                         Screen{QRectF(1280, 200, 1000, 900), QRectF(1280, 200, 1000, 860), 1.0}};
    f.set(Settings::windowAlignment.key, double(WindowAlignment::Start));
    f.panel->updateFrame();
    QCOMPARE(f.panel->geometry(), QRect(1160, 50, 116, 164));
    f.virtualPlatform.screens.mainIndex = 1;
    f.panel->updateFrame();
    QCOMPARE(f.panel->geometry(), QRect(2280 - 116 - 4, 220, 116, 164));
    f.set(Settings::windowAlignment.key, double(WindowAlignment::End));
    f.panel->updateFrame();
    QCOMPARE(f.panel->geometry(), QRect(2160, 1060 - 20 - 164, 116, 164));
}

void ShelfPanelFrameTest::every_tile_can_be_scrolled_onto_the_screen_data()
{
    QTest::addColumn<WindowEdge>("edge");
    QTest::addColumn<WindowAlignment>("alignment");
    QTest::addColumn<int>("count");
    QTest::newRow("column") << WindowEdge::Right << WindowAlignment::Center << 7;
    QTest::newRow("longest column") << WindowEdge::Left << WindowAlignment::Center << 50;
    QTest::newRow("column from the top") << WindowEdge::Right << WindowAlignment::Start << 7;
    QTest::newRow("column from the bottom") << WindowEdge::Right << WindowAlignment::End << 9;
    QTest::newRow("row") << WindowEdge::Bottom << WindowAlignment::Center << 16;
    QTest::newRow("row from the left") << WindowEdge::Top << WindowAlignment::Start << 16;
    QTest::newRow("row from the right") << WindowEdge::Bottom << WindowAlignment::End << 16;
}

void ShelfPanelFrameTest::every_tile_can_be_scrolled_onto_the_screen()
{
    QFETCH(WindowEdge, edge);
    QFETCH(WindowAlignment, alignment);
    QFETCH(int, count);
    const QRectF visible(0, 28, 1366, 740);
    const bool isRow = edge == WindowEdge::Top || edge == WindowEdge::Bottom;
    PanelFixture f;
    f.virtualPlatform.screens.screens = {Screen{QRectF(0, 0, 1366, 768), visible, 1.0}};
    f.set(Settings::windowEdge.key, double(edge));
    f.set(Settings::windowAlignment.key, double(alignment));
    if (isRow)
        f.set(Settings::shelfItemSize.key, 120.0);
    f.add(count);
    f.panel->show(Animated::No);
    QScrollBar *bar = isRow ? f.panel->scrollView->horizontalScrollBar() : f.panel->scrollView->verticalScrollBar();
    const QWidget *list = f.panel->scrollView->viewport();
    for (int i = 0; i < count; ++i) {
        const ShelfItemView *tile = f.tile(i);
        bool isSeen = false;
        for (int value = 0; value <= bar->maximum() && !isSeen; ++value) {
            bar->setValue(value);
            const QRectF place(tile->mapToGlobal(QPoint()), tile->size());
            const QRectF room = QRectF(list->mapToGlobal(QPoint()), list->size()) & visible;
            isSeen = isRow ? place.left() >= room.left() && place.right() <= room.right()
                           : place.top() >= room.top() && place.bottom() <= room.bottom();
        }
        QVERIFY2(isSeen, qPrintable(QString::number(i)));
    }
    // There is no more room than that.
    bar->setValue(bar->maximum());
    const QRectF last(f.tile(count - 1)->mapToGlobal(QPoint()), f.tile(count - 1)->size());
    const QRectF room = QRectF(list->mapToGlobal(QPoint()), list->size()) & visible;
    QCOMPARE(isRow ? room.right() - last.right() : room.bottom() - last.bottom(), 6.0);
    bar->setValue(0);
    const QRectF first(f.tile(0)->mapToGlobal(QPoint()), f.tile(0)->size());
    QCOMPARE(isRow ? first.left() - room.left() : first.top() - room.top(), 6.0);
}

void ShelfPanelFrameTest::a_shelf_that_is_on_the_screen_scrolls_no_further()
{
    PanelFixture f;
    f.virtualPlatform.screens.screens = {Screen{QRectF(0, 0, 1366, 768), QRectF(0, 0, 1366, 768), 1.0}};
    f.add(6);
    QCOMPARE(f.panel->stackView->minimumHeight(), 6 * 108 - 6 + 12);
    f.add(1);
    // The panel is 22 points below the screen and the list ends 8 above the panel's end.
    QCOMPARE(f.panel->frame().top(), -22.0);
    QCOMPARE(f.panel->stackView->minimumHeight(), 7 * 108 - 6 + 12 + 14);
    f.virtualPlatform.screens.screens = {Screen{QRectF(0, 0, 1280, 2000), QRectF(0, 0, 1280, 2000), 1.0}};
    f.panel->updateFrame();
    QCOMPARE(f.panel->stackView->minimumHeight(), 7 * 108 - 6 + 12);
}

void ShelfPanelFrameTest::without_a_main_screen_the_frame_stays_and_tiles_are_refreshed()
{
    PanelFixture f;
    f.add(2);
    const QRect before = f.panel->geometry();
    f.virtualPlatform.screens.mainIndex = -1;
    f.set(Settings::shelfItemSize.key, 100.0);
    f.panel->applySettings();
    QCOMPARE(f.panel->geometry(), before);
    QCOMPARE(f.tile(0)->height(), 130);
}

void ShelfPanelFrameTest::the_header_turns_with_the_edge()
{
    PanelFixture f;
    f.panel->show(Animated::No);
    QCOMPARE(f.panel->headerBar->geometry(), QRect(0, 8, 116, 24));
    QCOMPARE(f.panel->gearBtn->geometry(), QRect(8, 2, 20, 20));
    QCOMPARE(f.panel->selectAllBtn->geometry(), QRect(48, 2, 20, 20));
    QCOMPARE(f.panel->trashBtn->geometry(), QRect(88, 2, 20, 20));
    QCOMPARE(f.panel->sepLine->geometry(), QRect(8, 34, 100, 1));
    QCOMPARE(f.panel->scrollView->geometry(), QRect(0, 37, 116, 119));
    f.set(Settings::windowEdge.key, double(WindowEdge::Top));
    f.panel->updateFrame();
    const int height = f.panel->height();
    QCOMPARE(f.panel->headerBar->geometry(), QRect(0, 0, 36, height));
    QCOMPARE(f.panel->trashBtn->geometry(), QRect(8, 10, 20, 20));
    QCOMPARE(f.panel->gearBtn->geometry(), QRect(8, height - 30, 20, 20));
    QCOMPARE(f.panel->scrollView->geometry(), QRect(39, 8, 145 - 39, height - 16));
    QCOMPARE(f.panel->selectAllBtn->geometry(), QRect(8, 38, 20, 20));
    QCOMPARE(f.panel->sepLine->geometry(), QRect(36, 8, 1, height - 16));
    QCOMPARE(f.panel->visualFX->geometry(), f.panel->rect());
    QCOMPARE(f.panel->tintOverlay->geometry(), f.panel->rect());
    f.set(Settings::windowEdge.key, double(WindowEdge::Left));
    f.panel->updateFrame();
    QCOMPARE(f.panel->headerBar->geometry(), QRect(0, 8, 116, 24));
}

void ShelfPanelFrameTest::tiles_stand_six_points_apart_and_centred()
{
    PanelFixture f;
    f.add(3);
    f.panel->show(Animated::No);
    QCOMPARE(f.panel->stackView->width(), f.panel->scrollView->width());
    QCOMPARE(f.tile(0)->geometry(), QRect(14, 6, 88, 102));
    QCOMPARE(f.tile(1)->geometry(), QRect(14, 114, 88, 102));
    QCOMPARE(f.tile(2)->geometry(), QRect(14, 222, 88, 102));
    f.set(Settings::windowEdge.key, double(WindowEdge::Bottom));
    f.panel->updateFrame();
    QCOMPARE(f.tile(0)->x(), 6);
    QCOMPARE(f.tile(1)->x(), 6 + 88 + 6);
    QCOMPARE(f.tile(0)->y(), (f.panel->stackView->height() - 102) / 2);
}

void ShelfPanelFrameTest::an_eleventh_tile_scrolls()
{
    PanelFixture f;
    f.virtualPlatform.screens.screens = {Screen{QRectF(0, 0, 1280, 2000), QRectF(0, 0, 1280, 2000), 1.0}};
    f.add(10);
    f.panel->show(Animated::No);
    QApplication::processEvents();
    QCOMPARE(f.panel->scrollView->verticalScrollBar()->maximum(), 0);
    f.add(1);
    QApplication::processEvents();
    QVERIFY(f.panel->scrollView->verticalScrollBar()->maximum() > 0);
    // The scroller covers the tiles and takes no space of theirs.
    QCOMPARE(f.panel->stackView->width(), 116);
}

void ShelfPanelFrameTest::the_scroller_over_the_tiles_shows_from_the_eleventh_on()
{
    PanelFixture f;
    f.virtualPlatform.screens.screens = {Screen{QRectF(0, 0, 2000, 2000), QRectF(0, 0, 2000, 2000), 1.0}};
    f.add(10);
    f.panel->show(Animated::No);
    QApplication::processEvents();
    const ShelfScroller *scroller = columnScroller(*f.panel);
    QVERIFY(scroller);
    QVERIFY(!scroller->isVisible());
    f.add(1);
    QApplication::processEvents();
    QVERIFY(scroller->isVisible());
    QCOMPARE(scroller->geometry().right(), f.panel->scrollView->rect().right());
    QCOMPARE(scroller->height(), f.panel->scrollView->height());
    // A row has its own scroller, below the tiles.
    f.set(Settings::windowEdge.key, double(WindowEdge::Bottom));
    f.panel->updateFrame();
    QApplication::processEvents();
    QVERIFY(!scroller->isVisible());
    f.set(Settings::windowEdge.key, double(WindowEdge::Left));
    f.panel->updateFrame();
    QApplication::processEvents();
    QVERIFY(scroller->isVisible());
}

void ShelfPanelFrameTest::the_scroller_and_the_tiles_move_each_other()
{
    PanelFixture f;
    f.add(20);
    f.panel->show(Animated::No);
    QApplication::processEvents();
    ShelfScroller *scroller = columnScroller(*f.panel);
    QScrollBar *bar = f.panel->scrollView->verticalScrollBar();
    QVERIFY(bar->maximum() > 100);
    QCOMPARE(scroller->maximum(), bar->maximum());
    // Its 792 points end 168 below the screen, and the list 8 above their end.
    QCOMPARE(scroller->pageStep(), bar->pageStep() - 160);
    QCOMPARE(scroller->height(), f.panel->scrollView->height() - 160);
    scroller->setValue(70);
    QCOMPARE(bar->value(), 70);
    QCOMPARE(f.panel->stackView->y(), -70);
    bar->setValue(30);
    QCOMPARE(scroller->value(), 30);
}

void ShelfPanelFrameTest::a_row_ends_6_points_after_its_last_tile()
{
    PanelFixture f;
    f.set(Settings::windowEdge.key, double(WindowEdge::Bottom));
    f.add(3);
    QCOMPARE(f.tile(2)->geometry().right() + 1, 6 + 3 * 88 + 2 * 6);
    QCOMPARE(f.panel->stackView->minimumWidth(), 6 + 3 * 88 + 2 * 6 + 6);
}

void ShelfPanelFrameTest::a_clamped_column_keeps_the_lower_end_of_the_longer_one()
{
    PanelFixture f;
    f.add(14);
    // Its 792 points end where the 1136 of ten tiles would, below the screen.
    QCOMPARE(f.panel->geometry(), QRect(1160, 400 + 568 - 792, 116, 792));
}

void ShelfPanelFrameTest::the_label_of_an_empty_row_stands_10_points_below_its_middle()
{
    PanelFixture f;
    f.set(Settings::windowEdge.key, double(WindowEdge::Bottom));
    f.panel->show(Animated::No);
    QVERIFY(f.panel->stackView->isHorizontal());
    const QSize panel = f.panel->size();
    const QRect label = f.panel->dropLabel->geometry();
    QVERIFY(f.panel->dropLabel->isVisible());
    QCOMPARE(label.size(), f.panel->dropLabel->sizeHint());
    QCOMPARE(label.topLeft(), QPoint((panel.width() - label.width()) / 2, (panel.height() - label.height()) / 2 + 10));
    f.add(1);
    QVERIFY(!f.panel->dropLabel->isVisible());
}

PARKLET_TEST(ShelfPanelFrameTest)
#include "ShelfPanelFrameTest.moc"
