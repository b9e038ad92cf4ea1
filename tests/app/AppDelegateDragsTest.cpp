// SPDX-License-Identifier: MIT
#include "shelf/DropViews.h"
#include "tests/app/AppFixture.h"
#include "tests/app/DragsFixture.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QTest>

using namespace Qt::StringLiterals;

// How the shelf shows when a drag in another program begins, and how it hides again.
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
    void the_shelf_waits_for_a_drop_that_is_still_read();
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
    void where_the_pointer_is_unknown_the_shelf_comes_alone();

private:
    static void triggers();
};

namespace {

using Fixture = DragsFixture;

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
    // The shelf does not take what the drag carries.
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
        if (call == u"orderFront"_s)
            fronts.append(f.shelf.isVisible() ? u"second"_s : u"first"_s);
        QVERIFY(!f.cursorShelf.isVisible());
    };
    f.startDrag();
    QCOMPARE(fronts, QStringList({u"first"_s, u"second"_s}));
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

    // The setting is read at each drag.
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
    const QVariant listed = QVariantList{u"a.b"_s, kEditor};
    const QVariant other = QVariantList{u"org.example.Other"_s};
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
    f.virtualPlatform.workspace.frontmost = u"org.example.Files"_s;
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

void AppDelegateDragsTest::the_shelf_waits_for_a_drop_that_is_still_read()
{
    for (const bool comes : {true, false}) {
        Fixture f(kAtOnce);
        f.startDrag();
        f.queue.advance(1);
        f.virtualPlatform.dropPasteboard.reading = true;
        f.release();
        f.queue.advance(4.9);
        QVERIFY(f.shelf.isVisible() && !f.shelf.isHiding());
        f.virtualPlatform.dropPasteboard.reading = false;
        if (comes)
            f.drop(*f.shelf.container, {file("/dragged.txt")});
        f.queue.advance(60);
        QCOMPARE(f.shelf.isVisible(), comes);
    }
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
    // A drag that begins while the shelf waits to hide finds it visible, and does not keep it visible.
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
    // It does not receive further drags either.
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

    // The drop is recorded before the files are added, so it counts even when the shelf has all of them already.
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

void AppDelegateDragsTest::where_the_pointer_is_unknown_the_shelf_comes_alone()
{
    Fixture f(kNearCursor);
    f.virtualPlatform.screens.pointerPosition = {};
    f.startDrag();
    QVERIFY(f.shelf.isVisible());
    QVERIFY(!f.cursorShelf.isVisible());
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
