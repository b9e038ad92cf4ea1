// SPDX-License-Identifier: MIT
#include "shelf/DropViews.h"
#include "tests/app/AppFixture.h"
#include "tests/app/DragsFixture.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QTest>

using namespace Qt::StringLiterals;

// How the shelf shows when a drag in another program comes near.
class AppDelegateApproachTest : public QObject {
    Q_OBJECT

private slots:
    void an_approach_follows_the_drag_from_its_start_to_its_end();
    void an_approach_waits_for_a_pointer_whose_place_is_known();
    void an_approach_is_measured_from_where_the_shelf_would_appear();
    void the_shelf_appears_within_120_points_of_its_place_data();
    void the_shelf_appears_within_120_points_of_its_place();
    void an_approached_shelf_appears_in_a_later_turn_and_once();
    void a_shelf_that_appeared_meanwhile_is_not_shown_by_the_drag();
    void near_a_visible_shelf_nothing_is_queued();
    void moving_away_does_not_hide_the_shelf();
    void an_approached_shelf_that_got_nothing_goes_after_the_release();
    void a_drag_that_never_came_near_hides_nothing();
    void an_approach_leaves_the_flag_until_the_shelf_appears();
    void a_refused_monitor_brings_no_shelf();
    void a_changed_screen_moves_the_place_that_is_approached();
    void the_trigger_is_read_anew_for_each_drag();
    void the_end_of_a_drag_tidies_up_whatever_the_settings_say_by_then();
    void an_approach_to_a_delegate_that_has_gone_does_nothing();
};

namespace {

using Fixture = DragsFixture;

} // namespace

void AppDelegateApproachTest::an_approach_follows_the_drag_from_its_start_to_its_end()
{
    Fixture f(kWhenNear);
    f.virtualPlatform.screens.pointerPosition = kFarAway;
    QCOMPARE(f.proximityMonitors(), 0);
    f.startDrag();
    QCOMPARE(f.proximityMonitors(), 1);
    QCOMPARE(f.calls.last(), u"addMonitor 64"_s);
    QVERIFY(!f.shelf.isVisible());
    QVERIFY(!f.cursorShelf.isVisible());
    // The monitor stays installed after the shelf has shown.
    f.dragTo(kNearby);
    QVERIFY(f.shelf.isVisible());
    QCOMPARE(f.proximityMonitors(), 1);
    f.release();
    QCOMPARE(f.proximityMonitors(), 0);
    QCOMPARE(f.monitors.count(LeftMouseUp), 1);

    f.startDrag();
    QCOMPARE(f.proximityMonitors(), 1);
    f.release();
    QCOMPARE(f.proximityMonitors(), 0);
}

void AppDelegateApproachTest::an_approach_waits_for_a_pointer_whose_place_is_known()
{
    Fixture f(kWhenNear);
    f.virtualPlatform.screens.pointerPosition = {};
    f.startDrag();
    // The service that reports the pointer gets the frame in the points in which windows are placed.
    QCOMPARE(f.monitors.nearFrame, QRectF(1160, 318, 116, 164));
    f.monitors.send(LeftMouseDragged);
    f.queue.advance(1);
    QVERIFY(!f.shelf.isVisible());
    f.dragTo(kNearby);
    QVERIFY(f.shelf.isVisible());
}

void AppDelegateApproachTest::an_approach_is_measured_from_where_the_shelf_would_appear()
{
    Fixture f(kWhenNear);
    f.virtualPlatform.screens.pointerPosition = kFarAway;
    f.startDrag();
    QCOMPARE(f.shelf.frame(), QRectF(1160, 318, 116, 164));
    QVERIFY(!f.shelf.isVisible());
    f.release();

    f.values.insert(Settings::windowEdge.key, int(WindowEdge::Left));
    f.values.insert(Settings::shelfItemSize.key, 100.0);
    f.startDrag();
    QCOMPARE(f.shelf.frame(), QRectF(4, 304, 144, 192));
    QVERIFY(!f.shelf.isVisible());
    f.dragTo(kNearby);
    QVERIFY(!f.shelf.isVisible());
    f.dragTo(QPointF(200, 400));
    QVERIFY(f.shelf.isVisible());
}

void AppDelegateApproachTest::the_shelf_appears_within_120_points_of_its_place_data()
{
    // With start alignment, the shelf is at x 1160 to 1276 and, from the top, at y 20 to 184.
    QTest::addColumn<QPointF>("pointer");
    QTest::addColumn<bool>("shown");
    QTest::newRow("on it") << QPointF(1200, 100) << true;
    QTest::newRow("120 to the left") << QPointF(1040, 100) << true;
    QTest::newRow("121 to the left") << QPointF(1039, 100) << false;
    QTest::newRow("120 below") << QPointF(1200, 304) << true;
    QTest::newRow("121 below") << QPointF(1200, 305) << false;
    QTest::newRow("top of the screen") << QPointF(1200, 0) << true;
    QTest::newRow("corner") << QPointF(1041, 303) << true;
    QTest::newRow("mirrored") << QPointF(1200, 700) << false;
}

void AppDelegateApproachTest::the_shelf_appears_within_120_points_of_its_place()
{
    QFETCH(QPointF, pointer);
    QFETCH(bool, shown);
    Fixture f(kWhenNear, {{Settings::windowAlignment.key, int(WindowAlignment::Start)}});
    f.virtualPlatform.screens.pointerPosition = kFarAway;
    f.startDrag();
    f.dragTo(kFarAway);
    QVERIFY(!f.shelf.isVisible());
    f.dragTo(pointer);
    QCOMPARE(f.shelf.isVisible(), shown);
    QCOMPARE(f.delegate->shelfShownByCurrentDrag, shown);
}

void AppDelegateApproachTest::an_approached_shelf_appears_in_a_later_turn_and_once()
{
    Fixture f(kWhenNear);
    f.startDrag();
    f.moveTo(kNearby);
    QVERIFY(!f.shelf.isVisible());
    QCOMPARE(f.queue.pendingCount(), 1);
    f.moveTo(kNearby);
    QCOMPARE(f.queue.pendingCount(), 2);
    f.queue.runPending();
    QVERIFY(f.shelf.isVisible());
    QCOMPARE(f.shelf.alpha(), 0.0); // it fades in
    QVERIFY(f.delegate->shelfShownByCurrentDrag);
    QCOMPARE(f.panels.ordersFront, 1);
    QVERIFY(!f.cursorShelf.isVisible());
}

void AppDelegateApproachTest::a_shelf_that_appeared_meanwhile_is_not_shown_by_the_drag()
{
    Fixture f(kWhenNear);
    f.startDrag();
    f.moveTo(kNearby);
    QCOMPARE(f.queue.pendingCount(), 1);
    f.delegate->toggleShelf();
    f.queue.runPending();
    QCOMPARE(f.panels.ordersFront, 1);
    QVERIFY(!f.delegate->shelfShownByCurrentDrag);
    f.release();
    f.queue.advance(10);
    QVERIFY(f.shelf.isVisible());
}

void AppDelegateApproachTest::near_a_visible_shelf_nothing_is_queued()
{
    Fixture f(kWhenNear);
    f.showShelf();
    f.startDrag();
    QCOMPARE(f.proximityMonitors(), 1);
    f.moveTo(kNearby);
    QCOMPARE(f.queue.pendingCount(), 0);
    QVERIFY(!f.delegate->shelfShownByCurrentDrag);
    f.release();
    f.queue.advance(10);
    QVERIFY(f.shelf.isVisible());
    QCOMPARE(f.panels.ordersFront, 1);
}

void AppDelegateApproachTest::moving_away_does_not_hide_the_shelf()
{
    Fixture f(kWhenNear);
    f.startDrag();
    f.dragTo(kNearby);
    f.queue.advance(1);
    f.dragTo(kFarAway);
    f.queue.advance(60);
    QVERIFY(f.shelf.isVisible());
    QCOMPARE(f.shelf.alpha(), 1.0);
    QVERIFY(f.delegate->shelfShownByCurrentDrag);
}

void AppDelegateApproachTest::an_approached_shelf_that_got_nothing_goes_after_the_release()
{
    Fixture f(kWhenNear);
    f.startDrag();
    f.dragTo(kNearby);
    f.queue.advance(1);
    f.dragTo(kFarAway);
    f.release();
    f.queue.advance(0.149);
    QCOMPARE(f.shelf.alpha(), 1.0);
    f.queue.advance(0.001 + 0.18);
    QVERIFY(!f.shelf.isVisible());

    Fixture dropped(kWhenNear);
    dropped.startDrag();
    dropped.dragTo(kNearby);
    dropped.drop(*dropped.shelf.container, {file("/dragged.txt")});
    dropped.release();
    dropped.queue.advance(60);
    QVERIFY(dropped.shelf.isVisible());
}

void AppDelegateApproachTest::a_drag_that_never_came_near_hides_nothing()
{
    Fixture f(kWhenNear);
    f.startDrag();
    f.dragTo(kFarAway);
    f.dragTo(QPointF(1000, 100));
    f.release();
    QCOMPARE(f.queue.timerCount(), 0);
    QCOMPARE(f.queue.pendingCount(), 0);
    f.queue.advance(10);
    QCOMPARE(f.panels.ordersFront, 0);
    QCOMPARE(f.panels.ordersOut, 0);
}

void AppDelegateApproachTest::an_approach_leaves_the_flag_until_the_shelf_appears()
{
    for (const bool flag : {false, true}) {
        Fixture f(kWhenNear);
        f.delegate->shelfShownByCurrentDrag = flag;
        f.startDrag();
        f.dragTo(kFarAway);
        QCOMPARE(f.delegate->shelfShownByCurrentDrag, flag);
        f.dragTo(kNearby);
        QVERIFY(f.delegate->shelfShownByCurrentDrag);
    }
}

void AppDelegateApproachTest::a_refused_monitor_brings_no_shelf()
{
    Fixture f(kWhenNear);
    f.monitors.refuses = true;
    f.startDrag();
    QCOMPARE(f.proximityMonitors(), 0);
    f.dragTo(kNearby);
    QVERIFY(!f.shelf.isVisible());
    f.release();
    QCOMPARE(f.monitors.count(LeftMouseDragged), 1);
    QCOMPARE(f.queue.timerCount(), 0);

    // The next drag asks again.
    f.monitors.refuses = false;
    f.startDrag();
    f.dragTo(kNearby);
    QVERIFY(f.shelf.isVisible());
}

void AppDelegateApproachTest::a_changed_screen_moves_the_place_that_is_approached()
{
    Fixture f(kWhenNear);
    f.virtualPlatform.screens.pointerPosition = kFarAway;
    f.startDrag();
    f.virtualPlatform.screens.screens = {Screen{QRectF(0, 0, 1000, 600), QRectF(0, 0, 1000, 600), 1.0}};
    f.virtualPlatform.screens.onChange();
    QCOMPARE(f.shelf.frame(), QRectF(880, 218, 116, 164));
    f.dragTo(QPointF(800, 300));
    QVERIFY(f.shelf.isVisible());
}

void AppDelegateApproachTest::the_trigger_is_read_anew_for_each_drag()
{
    Fixture f(kAtOnce);
    f.startDrag();
    QVERIFY(f.shelf.isVisible());
    f.release();
    f.queue.advance(1);
    f.values.insert(Settings::autoShowTrigger.key, kNearCursor);
    f.startDrag();
    QVERIFY(f.cursorShelf.isVisible());
    f.release();
    f.queue.advance(1);
    f.values.insert(Settings::autoShowTrigger.key, kWhenNear);
    f.virtualPlatform.screens.pointerPosition = kFarAway;
    f.startDrag();
    QVERIFY(!f.shelf.isVisible());
    QCOMPARE(f.proximityMonitors(), 1);
}

void AppDelegateApproachTest::the_end_of_a_drag_tidies_up_whatever_the_settings_say_by_then()
{
    for (const int trigger : {kNearCursor, kWhenNear}) {
        Fixture f(trigger);
        f.virtualPlatform.screens.pointerPosition = kFarAway;
        f.startDrag();
        f.dragTo(kNearby);
        QVERIFY(f.shelf.isVisible());
        f.values.insert(Settings::autoShowDropWindow.key, false);
        f.values.insert(Settings::autoShowTrigger.key, kAtOnce);
        f.values.insert(Settings::excludeMode.key, int(ExcludeMode::ShowOnlyInListed));
        f.release();
        f.queue.advance(0.15 + 0.18);
        QVERIFY(!f.cursorShelf.isVisible());
        QCOMPARE(f.proximityMonitors(), 0);
        QVERIFY(!f.shelf.isVisible());
    }
}

void AppDelegateApproachTest::an_approach_to_a_delegate_that_has_gone_does_nothing()
{
    Fixture f(kWhenNear);
    f.startDrag();
    f.moveTo(kNearby);
    QCOMPARE(f.queue.pendingCount(), 1);
    f.delegate.reset();
    f.queue.runPending();
    f.dragTo(kNearby);
    f.release();
    QCOMPARE(f.panels.ordersFront, 0);
}

PARKLET_TEST(AppDelegateApproachTest)
#include "AppDelegateApproachTest.moc"
