// SPDX-License-Identifier: MIT
#include "shelf/DropViews.h"
#include "shelf/ShelfGeometry.h"
#include "tests/app/AppFixture.h"
#include "tests/support/DragEvents.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QTest>

// How a drag in another application brings the shelf, and how the shelf goes again.
class AppDelegateDragsTest : public QObject {
    Q_OBJECT

private slots:
    void a_drag_that_begins_while_the_shelf_fades_out_takes_it_with_it_again();
    void a_drag_shows_the_shelf_at_once_by_default();
    void a_shelf_that_was_visible_is_not_shown_again();
    void near_the_cursor_both_shelves_appear_the_big_one_first();
    void near_the_cursor_the_small_one_appears_beside_a_visible_shelf_too();
    void an_unknown_trigger_shows_nothing_data();
    void an_unknown_trigger_shows_nothing();
    void with_the_switch_off_nothing_appears_in_any_mode_data() { triggers(); }
    void with_the_switch_off_nothing_appears_in_any_mode();
    void an_excluded_application_brings_nothing_in_any_mode_data() { triggers(); }
    void an_excluded_application_brings_nothing_in_any_mode();
    void the_exclusions_follow_the_frontmost_application_and_the_settings_data();
    void the_exclusions_follow_the_frontmost_application_and_the_settings();
    void the_frontmost_application_is_the_one_at_the_start_of_the_drag();
    void every_drag_starts_without_a_drop_data();
    void every_drag_starts_without_a_drop();

    void an_unused_shelf_goes_015_seconds_after_the_release();
    void a_drop_on_the_shelf_keeps_it();
    void a_drop_that_arrives_after_the_release_keeps_the_shelf_data();
    void a_drop_that_arrives_after_the_release_keeps_the_shelf();
    void a_drop_keeps_even_a_shelf_that_is_empty_again();
    void a_shelf_that_holds_items_stays();
    void a_shelf_that_was_visible_before_the_drag_stays();
    void a_drop_of_an_earlier_drag_does_not_count();
    void a_shelf_that_the_user_hid_during_the_drag_stays_hidden();
    void the_state_of_a_drag_ends_with_it();
    void a_delegate_that_has_gone_hides_nothing();

    void the_cursor_shelf_goes_at_the_release_also_when_the_drop_went_elsewhere();
    void a_drop_on_the_cursor_shelf_fills_and_keeps_the_shelf();
    void a_drop_on_the_cursor_shelf_does_not_show_the_shelf();

    void an_approach_follows_the_drag_from_its_start_to_its_end();
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

private:
    static void triggers();
};

namespace {

constexpr int kAtOnce = 0;
constexpr int kNearCursor = 1;
constexpr int kWhenNear = 2;

const QString kEditor = QStringLiteral("org.example.Editor");

struct Fixture : AppFixture {
    explicit Fixture(int trigger, const QMap<QString, QVariant> &settings = {})
    {
        values.insert(Settings::autoShowTrigger.key, trigger);
        values.insert(settings);
        launch();
    }

    // The user begins to drag a file in another application.
    void startDrag()
    {
        ++virtualPlatform.dragPasteboard.count;
        virtualPlatform.dragPasteboard.urls = {file("/dragged.txt")};
        monitors.send(LeftMouseDragged);
        queue.runPending();
    }
    // Moves the pointer, in coordinates from the top left, and lets the program act on it.
    void dragTo(const QPointF &pointer)
    {
        moveTo(pointer);
        queue.runPending();
    }
    void moveTo(const QPointF &pointer)
    {
        virtualPlatform.screens.pointerPosition = pointer;
        monitors.send(LeftMouseDragged);
    }
    void release()
    {
        monitors.send(LeftMouseUp);
        queue.runPending();
    }
    void drop(QWidget &target, const QList<QUrl> &urls)
    {
        QMimeData data;
        data.setUrls(urls);
        QVERIFY(sendDragEnter(target, data));
        QVERIFY(sendDrop(target, data));
    }
    void showShelf()
    {
        delegate->toggleShelf();
        queue.advance(1);
    }
    // The monitors that follow the drag beside the one that noticed it.
    qsizetype proximityMonitors() const { return monitors.count(LeftMouseDragged) - 1; }

    VirtualEventMonitors &monitors = virtualPlatform.eventMonitors;
};

const QPointF kFarAway(100, 700);
// The default shelf stands at x 1160 to 1276 and y 318 to 482.
const QPointF kNearby(1100, 400);

} // namespace

void AppDelegateDragsTest::triggers()
{
    QTest::addColumn<int>("trigger");
    QTest::newRow("at once") << kAtOnce;
    QTest::newRow("near the cursor") << kNearCursor;
    QTest::newRow("when near") << kWhenNear;
}

void AppDelegateDragsTest::a_drag_shows_the_shelf_at_once_by_default()
{
    Fixture f(kAtOnce);
    f.values.remove(Settings::autoShowTrigger.key);
    f.startDrag();
    QVERIFY(f.shelf.isVisible());
    QCOMPARE(f.shelf.alpha(), 0.0); // it fades in
    QVERIFY(f.delegate->shelfShownByCurrentDrag);
    QVERIFY(!f.cursorShelf.isVisible());
    QCOMPARE(f.proximityMonitors(), 0);
    f.queue.advance(0.22);
    QCOMPARE(f.shelf.alpha(), 1.0);
    // What the drag carries is of no interest.
    QVERIFY(f.shelf.items.isEmpty());
}

void AppDelegateDragsTest::a_shelf_that_was_visible_is_not_shown_again()
{
    Fixture f(kAtOnce);
    f.showShelf();
    f.delegate->shelfShownByCurrentDrag = true;
    f.startDrag();
    QVERIFY(!f.delegate->shelfShownByCurrentDrag);
    QCOMPARE(f.panels.ordersFront, 1);
    QCOMPARE(f.shelf.alpha(), 1.0);
}

void AppDelegateDragsTest::near_the_cursor_both_shelves_appear_the_big_one_first()
{
    Fixture f(kNearCursor);
    f.virtualPlatform.screens.pointerPosition = QPointF(300, 200);
    QStringList fronts;
    f.virtualPlatform.log.onCall = [&](const QString &call) {
        if (call == QStringLiteral("orderFront"))
            fronts.append(f.shelf.isVisible() ? QStringLiteral("second") : QStringLiteral("first"));
        QVERIFY(!f.cursorShelf.isVisible());
    };
    f.startDrag();
    QCOMPARE(fronts, QStringList({QStringLiteral("first"), QStringLiteral("second")}));
    QVERIFY(f.shelf.isVisible());
    QVERIFY(f.cursorShelf.isVisible());
    QCOMPARE(f.cursorShelf.geometry(), QRect(324, 216, 88, 88));
    QVERIFY(f.delegate->shelfShownByCurrentDrag);
    QCOMPARE(f.proximityMonitors(), 0);
}

void AppDelegateDragsTest::near_the_cursor_the_small_one_appears_beside_a_visible_shelf_too()
{
    Fixture f(kNearCursor);
    f.showShelf();
    f.startDrag();
    QVERIFY(f.cursorShelf.isVisible());
    QCOMPARE(f.panels.ordersFront, 2);
    QCOMPARE(f.shelf.alpha(), 1.0);
    QVERIFY(!f.delegate->shelfShownByCurrentDrag);
}

void AppDelegateDragsTest::an_unknown_trigger_shows_nothing_data()
{
    QTest::addColumn<int>("trigger");
    QTest::newRow("3") << 3;
    QTest::newRow("-1") << -1;
}

void AppDelegateDragsTest::an_unknown_trigger_shows_nothing()
{
    QFETCH(int, trigger);
    Fixture f(trigger);
    f.delegate->dropReceivedOnShelf = true;
    f.startDrag();
    f.dragTo(kNearby);
    QVERIFY(!f.shelf.isVisible());
    QVERIFY(!f.cursorShelf.isVisible());
    QCOMPARE(f.proximityMonitors(), 0);
    QVERIFY(!f.delegate->dropReceivedOnShelf);
    f.release();
    QCOMPARE(f.queue.timerCount(), 0);
}

void AppDelegateDragsTest::with_the_switch_off_nothing_appears_in_any_mode()
{
    QFETCH(int, trigger);
    Fixture f(trigger, {{Settings::autoShowDropWindow.key, false}});
    f.delegate->dropReceivedOnShelf = true;
    f.startDrag();
    f.dragTo(kNearby);
    QVERIFY(!f.shelf.isVisible());
    QVERIFY(!f.cursorShelf.isVisible());
    QCOMPARE(f.proximityMonitors(), 0);
    QVERIFY(f.delegate->dropReceivedOnShelf); // not reset
    QVERIFY(!f.delegate->shelfShownByCurrentDrag);
    f.release();
    QCOMPARE(f.queue.timerCount(), 0);

    // The switch is read at each drag.
    f.values.insert(Settings::autoShowDropWindow.key, true);
    f.startDrag();
    f.dragTo(kNearby);
    QVERIFY(f.shelf.isVisible());
}

void AppDelegateDragsTest::an_excluded_application_brings_nothing_in_any_mode()
{
    QFETCH(int, trigger);
    Fixture f(trigger, {{Settings::excludedBundleIDs.key, QVariantList{kEditor}}});
    f.virtualPlatform.workspace.frontmost = kEditor;
    f.delegate->dropReceivedOnShelf = true;
    f.startDrag();
    f.dragTo(kNearby);
    QVERIFY(!f.shelf.isVisible());
    QVERIFY(!f.cursorShelf.isVisible());
    QCOMPARE(f.proximityMonitors(), 0);
    QVERIFY(f.delegate->dropReceivedOnShelf); // not reset
}

void AppDelegateDragsTest::the_exclusions_follow_the_frontmost_application_and_the_settings_data()
{
    const QVariant none;
    const QVariant listed = QVariantList{QStringLiteral("a.b"), kEditor};
    const QVariant other = QVariantList{QStringLiteral("org.example.Other")};
    QTest::addColumn<QString>("frontmost"); // null for none
    QTest::addColumn<QVariant>("mode");
    QTest::addColumn<QVariant>("list");
    QTest::addColumn<bool>("shown");
    QTest::newRow("no settings") << kEditor << none << none << true;
    QTest::newRow("hide by default, listed") << kEditor << none << listed << false;
    QTest::newRow("hide, listed") << kEditor << QVariant(0) << listed << false;
    QTest::newRow("hide, not listed") << kEditor << QVariant(0) << other << true;
    QTest::newRow("hide, empty list") << kEditor << QVariant(0) << QVariant(QVariantList()) << true;
    QTest::newRow("hide, in other case") << kEditor.toLower() << QVariant(0) << listed << true;
    QTest::newRow("only in, listed") << kEditor << QVariant(1) << listed << true;
    QTest::newRow("only in, not listed") << kEditor << QVariant(1) << other << false;
    QTest::newRow("only in, absent list") << kEditor << QVariant(1) << none << true;
    QTest::newRow("only in, empty list") << kEditor << QVariant(1) << QVariant(QVariantList()) << true;
    QTest::newRow("only in, in other case") << kEditor.toLower() << QVariant(1) << listed << false;
    QTest::newRow("hide, no application") << QString() << QVariant(0) << listed << true;
    QTest::newRow("only in, no application") << QString() << QVariant(1) << other << true;
    QTest::newRow("hide, list of another type") << kEditor << QVariant(0) << QVariant(kEditor) << true;
    QTest::newRow("only in, list of another type") << kEditor << QVariant(1) << QVariant(QVariantList{1, 2}) << true;
    QTest::newRow("unknown mode") << kEditor << QVariant(2) << listed << true;
}

void AppDelegateDragsTest::the_exclusions_follow_the_frontmost_application_and_the_settings()
{
    QFETCH(QString, frontmost);
    QFETCH(QVariant, mode);
    QFETCH(QVariant, list);
    Fixture f(kAtOnce);
    if (!frontmost.isNull())
        f.virtualPlatform.workspace.frontmost = frontmost;
    f.virtualPlatform.userDefaults.set(Settings::excludeMode.key, mode);
    f.virtualPlatform.userDefaults.set(Settings::excludedBundleIDs.key, list);
    f.startDrag();
    QTEST(f.shelf.isVisible(), "shown");
}

void AppDelegateDragsTest::the_frontmost_application_is_the_one_at_the_start_of_the_drag()
{
    Fixture f(kAtOnce, {{Settings::excludedBundleIDs.key, QVariantList{kEditor}}});
    f.virtualPlatform.workspace.frontmost = kEditor;
    f.startDrag();
    f.release();
    QVERIFY(!f.shelf.isVisible());
    f.virtualPlatform.workspace.frontmost = QStringLiteral("org.example.Files");
    f.startDrag();
    QVERIFY(f.shelf.isVisible());
}

void AppDelegateDragsTest::every_drag_starts_without_a_drop_data()
{
    triggers();
    QTest::newRow("unknown") << 7;
}

void AppDelegateDragsTest::every_drag_starts_without_a_drop()
{
    QFETCH(int, trigger);
    Fixture f(trigger);
    f.delegate->dropReceivedOnShelf = true;
    f.startDrag();
    QVERIFY(!f.delegate->dropReceivedOnShelf);
}

void AppDelegateDragsTest::an_unused_shelf_goes_015_seconds_after_the_release()
{
    Fixture f(kAtOnce);
    f.startDrag();
    f.queue.advance(1);
    f.release();
    QVERIFY(!f.delegate->shelfShownByCurrentDrag);
    f.queue.advance(0.149);
    QVERIFY(f.shelf.isVisible());
    QCOMPARE(f.queue.timerCount(), 1);
    QCOMPARE(f.shelf.alpha(), 1.0);
    // From here it fades out over 0.18 seconds.
    f.queue.advance(0.001 + 0.179);
    QVERIFY(f.shelf.isVisible());
    QVERIFY(f.shelf.alpha() < 0.1);
    f.queue.advance(0.001);
    QVERIFY(!f.shelf.isVisible());
}

void AppDelegateDragsTest::a_drop_on_the_shelf_keeps_it()
{
    Fixture f(kAtOnce);
    f.startDrag();
    f.drop(*f.shelf.container, {file("/dragged.txt")});
    QVERIFY(f.delegate->dropReceivedOnShelf);
    QCOMPARE(f.shelf.items, QList{file("/dragged.txt")});
    f.release();
    f.queue.advance(60);
    QVERIFY(f.shelf.isVisible());
    QCOMPARE(f.shelf.alpha(), 1.0);
}

void AppDelegateDragsTest::a_drop_that_arrives_after_the_release_keeps_the_shelf_data()
{
    QTest::addColumn<double>("delay");
    QTest::addColumn<bool>("kept");
    QTest::newRow("at once") << 0.0 << true;
    QTest::newRow("just in time") << 0.149 << true;
    QTest::newRow("too late") << 0.151 << false;
}

void AppDelegateDragsTest::a_drop_that_arrives_after_the_release_keeps_the_shelf()
{
    QFETCH(double, delay);
    Fixture f(kAtOnce);
    f.startDrag();
    f.queue.advance(1);
    f.release();
    f.queue.advance(delay);
    f.drop(*f.shelf.container, {file("/dragged.txt")});
    f.queue.advance(60);
    QTEST(f.shelf.isVisible(), "kept");
}

void AppDelegateDragsTest::a_drop_keeps_even_a_shelf_that_is_empty_again()
{
    Fixture f(kAtOnce);
    f.startDrag();
    f.delegate->dropReceivedOnShelf = true;
    f.release();
    f.queue.advance(60);
    QVERIFY(f.shelf.items.isEmpty());
    QVERIFY(f.shelf.isVisible());
}

void AppDelegateDragsTest::a_shelf_that_holds_items_stays()
{
    Fixture f(kAtOnce);
    f.shelf.addItem(file("/a.txt"));
    f.startDrag();
    QVERIFY(f.delegate->shelfShownByCurrentDrag);
    f.release();
    f.queue.advance(60);
    QVERIFY(!f.delegate->dropReceivedOnShelf);
    QVERIFY(f.shelf.isVisible());
}

void AppDelegateDragsTest::a_shelf_that_was_visible_before_the_drag_stays()
{
    Fixture f(kAtOnce);
    f.showShelf();
    f.startDrag();
    f.release();
    QCOMPARE(f.queue.timerCount(), 0);
    f.queue.advance(60);
    QVERIFY(f.shelf.isVisible());
}

void AppDelegateDragsTest::a_drop_of_an_earlier_drag_does_not_count()
{
    Fixture f(kAtOnce);
    f.startDrag();
    f.drop(*f.shelf.container, {file("/dragged.txt")});
    f.release();
    f.shelf.removeItem(file("/dragged.txt"));
    f.queue.advance(10);
    QVERIFY(!f.shelf.isVisible());

    f.startDrag();
    QVERIFY(f.delegate->shelfShownByCurrentDrag);
    f.release();
    f.queue.advance(1);
    QVERIFY(!f.shelf.isVisible());
}

void AppDelegateDragsTest::a_shelf_that_the_user_hid_during_the_drag_stays_hidden()
{
    Fixture f(kAtOnce);
    f.startDrag();
    f.delegate->toggleShelf();
    f.queue.advance(1);
    f.release();
    f.queue.advance(1);
    QVERIFY(!f.shelf.isVisible());
    QCOMPARE(f.panels.ordersOut, 1);
}

void AppDelegateDragsTest::the_state_of_a_drag_ends_with_it()
{
    Fixture f(kAtOnce);
    f.startDrag();
    f.release();
    QVERIFY(!f.delegate->shelfShownByCurrentDrag);
    // A drag that begins while the shelf waits to go finds it visible and does not hold it.
    f.startDrag();
    QVERIFY(!f.delegate->shelfShownByCurrentDrag);
    f.queue.advance(1);
    QVERIFY(!f.shelf.isVisible());
    f.release();
    QCOMPARE(f.queue.timerCount(), 0);
}

void AppDelegateDragsTest::a_delegate_that_has_gone_hides_nothing()
{
    Fixture f(kNearCursor);
    f.startDrag();
    f.release();
    const int out = f.panels.ordersOut;
    QVERIFY(f.queue.timerCount() > 0);
    f.delegate.reset();
    f.queue.advance(10);
    QCOMPARE(f.panels.ordersOut, out);
    // Nor is it told of further drags.
    f.startDrag();
    f.release();
    QCOMPARE(f.panels.ordersFront, 2);
}

void AppDelegateDragsTest::the_cursor_shelf_goes_at_the_release_also_when_the_drop_went_elsewhere()
{
    Fixture f(kNearCursor);
    f.startDrag();
    f.queue.advance(1);
    QCOMPARE(f.cursorShelf.alpha(), 1.0);
    f.release();
    QVERIFY(f.cursorShelf.isVisible());
    f.queue.advance(0.119);
    QVERIFY(f.cursorShelf.isVisible());
    f.queue.advance(0.001);
    QVERIFY(!f.cursorShelf.isVisible());
    QVERIFY(f.shelf.isVisible());
    f.queue.advance(0.03 + 0.18);
    QVERIFY(!f.shelf.isVisible());
}

void AppDelegateDragsTest::a_drop_on_the_cursor_shelf_fills_and_keeps_the_shelf()
{
    Fixture f(kNearCursor);
    f.startDrag();
    f.queue.advance(1);
    f.drop(*f.cursorShelf.dropZone, {file("/z.txt"), file("/a.txt")});
    QVERIFY(f.delegate->dropReceivedOnShelf);
    QCOMPARE(f.shelf.items, QList({file("/z.txt"), file("/a.txt")}));
    f.release();
    f.queue.advance(60);
    QVERIFY(!f.cursorShelf.isVisible());
    QVERIFY(f.shelf.isVisible());

    // The drop is noted before the files are added, and so counts when all of them are there already.
    f.delegate->dropReceivedOnShelf = false;
    bool noted = false;
    QObject observer;
    f.shared.notifications().observe(Notifications::shelfItemsChanged, &observer,
                                     [&](const QVariantMap &) { noted = f.delegate->dropReceivedOnShelf; });
    f.cursorShelf.onDrop({file("/new.txt")});
    QVERIFY(noted);
    f.delegate->dropReceivedOnShelf = false;
    f.cursorShelf.onDrop({file("/new.txt")});
    QVERIFY(f.delegate->dropReceivedOnShelf);
}

void AppDelegateDragsTest::a_drop_on_the_cursor_shelf_does_not_show_the_shelf()
{
    Fixture f(kNearCursor);
    f.startDrag();
    f.delegate->toggleShelf();
    f.queue.advance(1);
    f.drop(*f.cursorShelf.dropZone, {file("/a.txt")});
    QCOMPARE(f.shelf.items.size(), 1);
    QVERIFY(!f.shelf.isVisible());
}

void AppDelegateDragsTest::an_approach_follows_the_drag_from_its_start_to_its_end()
{
    Fixture f(kWhenNear);
    f.virtualPlatform.screens.pointerPosition = kFarAway;
    QCOMPARE(f.proximityMonitors(), 0);
    f.startDrag();
    QCOMPARE(f.proximityMonitors(), 1);
    QCOMPARE(f.calls.last(), QStringLiteral("addMonitor 64"));
    QVERIFY(!f.shelf.isVisible());
    QVERIFY(!f.cursorShelf.isVisible());
    // It stays installed after the shelf has appeared.
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

void AppDelegateDragsTest::an_approach_is_measured_from_where_the_shelf_would_appear()
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

void AppDelegateDragsTest::the_shelf_appears_within_120_points_of_its_place_data()
{
    // Aligned to the start, the shelf stands at x 1160 to 1276 and, from the top, at y 20 to 184.
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

void AppDelegateDragsTest::the_shelf_appears_within_120_points_of_its_place()
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

void AppDelegateDragsTest::an_approached_shelf_appears_in_a_later_turn_and_once()
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

void AppDelegateDragsTest::a_shelf_that_appeared_meanwhile_is_not_shown_by_the_drag()
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

void AppDelegateDragsTest::near_a_visible_shelf_nothing_is_queued()
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

void AppDelegateDragsTest::moving_away_does_not_hide_the_shelf()
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

void AppDelegateDragsTest::an_approached_shelf_that_got_nothing_goes_after_the_release()
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

void AppDelegateDragsTest::a_drag_that_never_came_near_hides_nothing()
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

void AppDelegateDragsTest::an_approach_leaves_the_flag_until_the_shelf_appears()
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

void AppDelegateDragsTest::a_refused_monitor_brings_no_shelf()
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

void AppDelegateDragsTest::a_changed_screen_moves_the_place_that_is_approached()
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

void AppDelegateDragsTest::the_trigger_is_read_anew_for_each_drag()
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

void AppDelegateDragsTest::the_end_of_a_drag_tidies_up_whatever_the_settings_say_by_then()
{
    for (const int trigger : {kNearCursor, kWhenNear}) {
        Fixture f(trigger);
        f.virtualPlatform.screens.pointerPosition = kFarAway;
        f.startDrag();
        f.dragTo(kNearby);
        QVERIFY(f.shelf.isVisible());
        f.values.insert(Settings::autoShowDropWindow.key, false);
        f.values.insert(Settings::autoShowTrigger.key, kAtOnce);
        f.values.insert(Settings::excludeMode.key, 1);
        f.release();
        f.queue.advance(0.15 + 0.18);
        QVERIFY(!f.cursorShelf.isVisible());
        QCOMPARE(f.proximityMonitors(), 0);
        QVERIFY(!f.shelf.isVisible());
    }
}

void AppDelegateDragsTest::an_approach_to_a_delegate_that_has_gone_does_nothing()
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

void AppDelegateDragsTest::a_drag_that_begins_while_the_shelf_fades_out_takes_it_with_it_again()
{
    AppFixture f;
    f.launch();
    f.delegate->dragMonitorDidStartDrag({});
    f.delegate->dragMonitorDidEndDrag();
    f.virtualPlatform.mainQueue.advance(0.2);
    QVERIFY(f.delegate->shelf.isHiding());
    f.delegate->dragMonitorDidStartDrag({});
    QVERIFY(!f.delegate->shelf.isHiding());
    QVERIFY(f.delegate->shelfShownByCurrentDrag);
    f.delegate->dragMonitorDidEndDrag();
    f.virtualPlatform.mainQueue.advance(1);
    QVERIFY(!f.delegate->shelf.isVisible());
}

PARKLET_TEST(AppDelegateDragsTest)
#include "AppDelegateDragsTest.moc"
