// SPDX-License-Identifier: MIT
#include "platform/linux/x11/VisibleFrame.h"
#include "tests/support/TestProgram.h"

#include <QTest>

namespace {

// There are two screens side by side, the right one lower and smaller.
const QRect kLeftScreen(0, 0, 1920, 1080);
const QRect kRightScreen(1920, 200, 1280, 800);
const QSize kRoot(3200, 1080);

class VisibleFrameTest : public QObject {
    Q_OBJECT

private slots:
    void without_struts_the_whole_screen_is_visible();
    void each_edge_of_a_single_screen_is_reserved();
    void a_strut_takes_space_only_on_the_screen_of_its_window();
    void a_strut_at_an_inner_edge_passes_over_the_screen_before_it();
    void a_strut_that_ends_at_a_screens_edge_takes_nothing_of_it();
    void a_strut_is_measured_from_the_root_windows_edge();
    void the_ends_of_a_strut_belong_to_it();
    void the_deepest_of_several_struts_counts();
    void struts_that_leave_nothing_do_not_count();
    void a_work_area_counts_for_the_screen_that_it_lies_in();
    void a_partial_strut_is_read_in_its_order();
    void a_partial_strut_goes_before_a_whole_one();
    void a_strut_without_a_range_takes_the_whole_edge();
    void a_malformed_strut_reserves_nothing();
    void a_window_is_on_the_screen_that_shows_most_of_it();
    void a_window_off_all_screens_or_across_all_is_on_none();
};

void VisibleFrameTest::without_struts_the_whole_screen_is_visible()
{
    QCOMPARE(visiblePixels(kLeftScreen, kRoot, {}), kLeftScreen);
    QCOMPARE(visiblePixels(kRightScreen, kRoot, {}), kRightScreen);
}

void VisibleFrameTest::each_edge_of_a_single_screen_is_reserved()
{
    Strut strut;
    strut.left = {10, 0, 799};
    strut.right = {20, 0, 799};
    strut.top = {30, 0, 1279};
    strut.bottom = {40, 0, 1279};
    QCOMPARE(visiblePixels({0, 0, 1280, 800}, {1280, 800}, {strut}), QRect(10, 30, 1250, 730));
}

void VisibleFrameTest::a_strut_takes_space_only_on_the_screen_of_its_window()
{
    Strut top;
    top.top = {30, 0, 1919};
    QCOMPARE(visiblePixels(kLeftScreen, kRoot, {top}), QRect(0, 30, 1920, 1050));
    QCOMPARE(visiblePixels(kRightScreen, kRoot, {top}), kRightScreen);

    Strut right;
    right.right = {50, 200, 999};
    QCOMPARE(visiblePixels(kLeftScreen, kRoot, {right}), kLeftScreen);
    QCOMPARE(visiblePixels(kRightScreen, kRoot, {right}), QRect(1920, 200, 1230, 800));
}

void VisibleFrameTest::a_strut_at_an_inner_edge_passes_over_the_screen_before_it()
{
    // A dock at the left edge of the right screen reserves from the left edge of the root window.
    Strut left;
    left.left = {1920 + 64, 200, 999};
    QCOMPARE(visiblePixels(kLeftScreen, kRoot, {left}), kLeftScreen);
    QCOMPARE(visiblePixels(kRightScreen, kRoot, {left}), QRect(1984, 200, 1216, 800));
}

void VisibleFrameTest::a_strut_that_ends_at_a_screens_edge_takes_nothing_of_it()
{
    Strut left;
    left.left = {1920, 0, 1079};
    QCOMPARE(visiblePixels(kLeftScreen, kRoot, {left}), kLeftScreen);
    QCOMPARE(visiblePixels(kRightScreen, kRoot, {left}), kRightScreen);
}

void VisibleFrameTest::a_strut_is_measured_from_the_root_windows_edge()
{
    // The right screen ends 80 pixels above the bottom of the root window.
    Strut bottom;
    bottom.bottom = {80 + 40, 1920, 3199};
    QCOMPARE(visiblePixels(kRightScreen, kRoot, {bottom}), QRect(1920, 200, 1280, 760));
    QCOMPARE(visiblePixels(kLeftScreen, kRoot, {bottom}), kLeftScreen);
}

void VisibleFrameTest::the_ends_of_a_strut_belong_to_it()
{
    Strut top;
    top.top = {230, 3199, 3199};
    QCOMPARE(visiblePixels(kRightScreen, kRoot, {top}), QRect(1920, 230, 1280, 770));
    top.top = {230, 0, 1919};
    QCOMPARE(visiblePixels(kRightScreen, kRoot, {top}), kRightScreen);
    top.top = {230, 0, 1920};
    QCOMPARE(visiblePixels(kRightScreen, kRoot, {top}), QRect(1920, 230, 1280, 770));
}

void VisibleFrameTest::the_deepest_of_several_struts_counts()
{
    Strut one;
    one.top = {20, 0, 1919};
    Strut other;
    other.top = {35, 500, 800};
    QCOMPARE(visiblePixels(kLeftScreen, kRoot, {one, other}), QRect(0, 35, 1920, 1045));
    QCOMPARE(visiblePixels(kLeftScreen, kRoot, {other, one}), QRect(0, 35, 1920, 1045));
}

void VisibleFrameTest::struts_that_leave_nothing_do_not_count()
{
    Strut strut;
    strut.top = {600, 0, 1919};
    strut.bottom = {600, 0, 1919};
    QCOMPARE(visiblePixels(kLeftScreen, kRoot, {strut}), kLeftScreen);
}

void VisibleFrameTest::a_work_area_counts_for_the_screen_that_it_lies_in()
{
    const QList<QRect> areas = {QRect(0, 27, 1920, 1053), QRect(1920, 200, 1280, 800)};
    QCOMPARE(visiblePixels(kLeftScreen, kRoot, {}, areas), QRect(0, 27, 1920, 1053));
    QCOMPARE(visiblePixels(kRightScreen, kRoot, {}, areas), kRightScreen);
    Strut bottom;
    bottom.bottom = {50, 0, 1919};
    QCOMPARE(visiblePixels(kLeftScreen, kRoot, {bottom}, areas), QRect(0, 27, 1920, 1003));
    QCOMPARE(visiblePixels(kLeftScreen, kRoot, {}, {QRect(0, 27, 3200, 1053)}), kLeftScreen);
}

void VisibleFrameTest::a_partial_strut_is_read_in_its_order()
{
    const Strut strut = strutOf({1, 2, 3, 4, 10, 11, 20, 21, 30, 31, 40, 41}, {});
    QCOMPARE(strut.left, (Strut::Edge{1, 10, 11}));
    QCOMPARE(strut.right, (Strut::Edge{2, 20, 21}));
    QCOMPARE(strut.top, (Strut::Edge{3, 30, 31}));
    QCOMPARE(strut.bottom, (Strut::Edge{4, 40, 41}));
}

void VisibleFrameTest::a_partial_strut_goes_before_a_whole_one()
{
    const Strut strut = strutOf({0, 0, 30, 0, 0, 0, 0, 0, 0, 1919, 0, 0}, {0, 0, 99, 0});
    QCOMPARE(strut.top, (Strut::Edge{30, 0, 1919}));
}

void VisibleFrameTest::a_strut_without_a_range_takes_the_whole_edge()
{
    const QRect expected(0, 30, 1280, 770);
    QCOMPARE(visiblePixels({0, 0, 1280, 800}, {1280, 800}, {strutOf({}, {0, 0, 30, 0})}), expected);
    const Strut strut = strutOf({0, 0, 30, 0, 0, 0, 0, 0, 0, 0, 0, 0}, {});
    QCOMPARE(visiblePixels({0, 0, 1280, 800}, {1280, 800}, {strut}), expected);
}

void VisibleFrameTest::a_malformed_strut_reserves_nothing()
{
    QVERIFY(strutOf({}, {}).isEmpty());
    QVERIFY(strutOf({1, 2, 3}, {1, 2}).isEmpty());
    QVERIFY(strutOf({0, 0, 0, 0, 0, 9, 0, 9, 0, 9, 0, 9}, {}).isEmpty());
    // Values outside all screens do no harm.
    const Strut strut = strutOf(std::vector<quint32>(12, 0xffffffff), {});
    QCOMPARE(visiblePixels(kLeftScreen, kRoot, {strut}), kLeftScreen);
}

void VisibleFrameTest::a_window_is_on_the_screen_that_shows_most_of_it()
{
    const QList<QRect> screens = {kLeftScreen, kRightScreen};
    QCOMPARE(screenShowing({100, 100, 400, 300}, screens), std::optional<qsizetype>(0));
    QCOMPARE(screenShowing({1800, 300, 400, 300}, screens), std::optional<qsizetype>(1));
    QCOMPARE(screenShowing({1600, 300, 400, 300}, screens), std::optional<qsizetype>(0));
    QCOMPARE(screenShowing({-50, -50, 2020, 1180}, screens), std::optional<qsizetype>(0));
}

void VisibleFrameTest::a_window_off_all_screens_or_across_all_is_on_none()
{
    const QList<QRect> screens = {kLeftScreen, kRightScreen};
    QCOMPARE(screenShowing({5000, 0, 100, 100}, screens), std::nullopt);
    QCOMPARE(screenShowing({0, 0, 3200, 1080}, screens), std::nullopt);
    QCOMPARE(screenShowing({0, 0, 100, 100}, {}), std::nullopt);
}

} // namespace

PARKLET_APPLESS_TEST(VisibleFrameTest)
#include "VisibleFrameTest.moc"
