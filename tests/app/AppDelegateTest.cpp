// SPDX-License-Identifier: MIT
#include "tests/app/AppFixture.h"
#include "tests/app/RunningFixture.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

// How the running application reacts: to screenshots, settings, the Appearance pane and a changed screen.
class AppDelegateTest : public QObject {
    Q_OBJECT

private slots:
    void a_new_screenshot_is_added_and_shows_the_shelf();
    void a_new_screenshot_brings_back_a_shelf_that_fades_out();
    void a_new_screenshot_shows_a_full_shelf();
    void a_screenshot_made_again_under_its_name_shows_the_shelf();
    void a_screenshot_while_the_setting_is_off_is_ignored_at_once();
    void turning_screenshots_on_takes_effect_with_the_next_settings_change();

    void a_settings_change_goes_in_its_order();
    void a_settings_change_places_the_shelf_anew();
    void turning_the_icon_off_and_on_makes_a_fresh_item_and_menu();
    void a_status_item_that_is_there_is_kept();
    void the_dock_icon_follows_every_settings_change();
    void visible_preferences_are_shown_again_in_a_later_turn();
    void hidden_preferences_are_left_alone();
    void minimised_preferences_are_left_alone();
    void every_settings_change_starts_or_stops_the_watcher();
    void a_settings_change_leaves_the_login_item();

    void the_appearance_pane_brings_a_hidden_shelf_and_takes_it_away();
    void the_appearance_pane_leaves_a_visible_shelf();
    void a_shelf_that_the_user_hides_meanwhile_stays_away();
    void an_appearance_pane_that_is_left_and_entered_at_once_keeps_its_shelf();
    void anything_but_true_counts_as_leaving_data();
    void anything_but_true_counts_as_leaving();
    void leaving_without_having_come_hides_the_shelf();
    void the_shelfs_gear_button_opens_the_preferences();

    void a_changed_screen_moves_a_visible_shelf_only();
    void what_a_delegate_handed_out_does_nothing_after_it_has_gone();
};

namespace {

using Fixture = RunningFixture;

} // namespace

void AppDelegateTest::a_new_screenshot_is_added_and_shows_the_shelf()
{
    Fixture f;
    qsizetype addedBefore = 0;
    f.virtualPlatform.log.onCall = [&](const QString &) { addedBefore = f.shelf.items.size(); };
    const QUrl first = f.saveScreenshot(u"one.png"_s);
    QVERIFY(f.shelf.items.isEmpty());
    f.queue.runPending();
    QCOMPARE(f.shelf.items, QList{first});
    QVERIFY(f.shelf.isVisible());
    QCOMPARE(f.shelf.alpha(), 0.0);
    QCOMPARE(addedBefore, 1);

    // A visible shelf does not show again.
    f.queue.advance(1);
    const QUrl second = f.saveScreenshot(u"two.png"_s);
    f.queue.runPending();
    QCOMPARE(f.shelf.items, QList({first, second}));
    QCOMPARE(f.panels.ordersFront, 1);
    QCOMPARE(f.shelf.alpha(), 1.0);
}

void AppDelegateTest::a_new_screenshot_brings_back_a_shelf_that_fades_out()
{
    Fixture f;
    f.fadeOut();
    f.saveScreenshot(u"one.png"_s);
    f.queue.runPending();
    QCOMPARE(f.shelf.items.size(), 1);
    QVERIFY(f.comesBack());
}

void AppDelegateTest::a_new_screenshot_shows_a_full_shelf()
{
    Fixture f;
    for (int i = 0; i < 50; ++i)
        f.shelf.addItem(QUrl::fromLocalFile(u"/%1.txt"_s.arg(i)));
    QVERIFY(!f.shelf.isVisible());
    f.saveScreenshot(u"one.png"_s);
    f.queue.runPending();
    QVERIFY(f.shelf.isVisible());
    QCOMPARE(f.shelf.items.size(), 50);
}

void AppDelegateTest::a_screenshot_made_again_under_its_name_shows_the_shelf()
{
    Fixture f;
    const QUrl one = f.saveScreenshot(u"one.png"_s);
    f.queue.advance(1);
    f.delegate->toggleShelf();
    f.queue.advance(1);
    QVERIFY(!f.shelf.isVisible());
    QVERIFY(QFile::remove(one.toLocalFile()));
    f.virtualPlatform.fileEventStreams.send();
    f.saveScreenshot(u"one.png"_s);
    f.queue.runPending();
    QVERIFY(f.shelf.isVisible());
    QCOMPARE(f.shelf.items, QList{one});
}

void AppDelegateTest::a_screenshot_while_the_setting_is_off_is_ignored_at_once()
{
    Fixture f;
    f.values.insert(Settings::autoAddScreenshots.key, false);
    f.saveScreenshot(u"one.png"_s);
    f.queue.runPending();
    QVERIFY(f.shelf.items.isEmpty());
    QVERIFY(!f.shelf.isVisible());
    // The stream itself continues until the next change of a setting.
    QVERIFY(f.virtualPlatform.fileEventStreams.streams.first()->isRunning());
}

void AppDelegateTest::turning_screenshots_on_takes_effect_with_the_next_settings_change()
{
    Fixture f({{Settings::autoAddScreenshots.key, false}});
    f.values.insert(Settings::autoAddScreenshots.key, true);
    f.queue.advance(60);
    QVERIFY(f.virtualPlatform.fileEventStreams.streams.isEmpty());
    f.change(Settings::showDockIcon.key, true);
    QCOMPARE(f.virtualPlatform.fileEventStreams.streams.size(), 1);
    QVERIFY(f.virtualPlatform.fileEventStreams.streams.first()->isRunning());
}

void AppDelegateTest::a_settings_change_goes_in_its_order()
{
    Fixture f({{Settings::showMenuBarIcon.key, false}});
    f.delegate->openPreferences();
    f.calls.clear();
    QRectF frameAtIcon;
    f.virtualPlatform.log.onCall = [&](const QString &call) {
        if (call == u"makeStatusItem"_s)
            frameAtIcon = f.shelf.frame();
    };
    f.values.insert(Settings::showMenuBarIcon.key, true);
    f.change(Settings::windowEdge.key, int(WindowEdge::Left));
    f.queue.runPending();
    QCOMPARE(f.calls, QStringList({u"makeStatusItem"_s, u"setPolicy"_s, u"openStream"_s, u"activate"_s}));
    QCOMPARE(frameAtIcon.x(), 4.0);
}

void AppDelegateTest::a_settings_change_places_the_shelf_anew()
{
    Fixture f;
    f.delegate->toggleShelf();
    f.queue.advance(1);
    f.shelf.addItem(file("/a.txt"));
    QCOMPARE(f.shelf.frame(), QRectF(1160, 318, 116, 164));
    f.values.insert(Settings::shelfItemSize.key, 100.0);
    QCOMPARE(f.shelf.frame(), QRectF(1160, 318, 116, 164));
    f.change(Settings::windowEdge.key, int(WindowEdge::Left));
    QCOMPARE(f.shelf.frame(), QRectF(4, 304, 144, 192));
    // Its visibility does not change, in either direction.
    QVERIFY(f.shelf.isVisible());
    QCOMPARE(f.panels.ordersFront, 1);
    Fixture hidden;
    hidden.change(Settings::windowEdge.key, int(WindowEdge::Left));
    QVERIFY(!hidden.shelf.isVisible());
}

void AppDelegateTest::turning_the_icon_off_and_on_makes_a_fresh_item_and_menu()
{
    Fixture f;
    f.change(Settings::showMenuBarIcon.key, false);
    QVERIFY(!f.item());
    f.values.insert(Settings::launchAtLogin.key, true);
    f.change(Settings::showMenuBarIcon.key, true);
    QVERIFY(f.item());
    QCOMPARE(f.virtualPlatform.statusBar.created, 2);
    QCOMPARE(f.item()->symbol, u"tray.and.arrow.down"_s);
    QCOMPARE(f.item()->description, u"Parklet"_s);
    QCOMPARE(f.menuItems().size(), 13);
    QVERIFY(f.isChecked());
}

void AppDelegateTest::a_status_item_that_is_there_is_kept()
{
    Fixture f;
    const VirtualStatusBar::Item *item = f.item();
    const QMenu *menu = item->menu.get();
    f.change(Settings::tintIntensity.key, 0.9);
    QCOMPARE(f.item(), item);
    QCOMPARE(f.item()->menu.get(), menu);
    QCOMPARE(f.virtualPlatform.statusBar.created, 1);

    Fixture without({{Settings::showMenuBarIcon.key, false}});
    without.change(Settings::tintIntensity.key, 0.9);
    QVERIFY(!without.item());
}

void AppDelegateTest::the_dock_icon_follows_every_settings_change()
{
    using Policy = ActivationPolicy::Policy;
    Fixture f;
    f.change(Settings::tintIntensity.key, 0.9);
    f.change(Settings::showDockIcon.key, true);
    f.change(Settings::tintIntensity.key, 0.8);
    f.change(Settings::showDockIcon.key, false);
    QCOMPARE(f.virtualPlatform.activationPolicy.policies,
             QList({Policy::Accessory, Policy::Regular, Policy::Regular, Policy::Accessory}));
}

void AppDelegateTest::visible_preferences_are_shown_again_in_a_later_turn()
{
    Fixture f;
    f.delegate->openPreferences();
    const auto &activated = f.virtualPlatform.activationPolicy.activated;
    QCOMPARE(activated.size(), 1);
    // The desktop may hide the window as the policy changes. Its visibility before that counts.
    f.virtualPlatform.log.onCall = [&](const QString &call) {
        if (call == u"setPolicy"_s)
            f.shared.preferences().window()->hide();
    };
    f.change(Settings::showDockIcon.key, true);
    QCOMPARE(activated.size(), 1);
    QVERIFY(!f.shared.isPreferencesWindowVisible());
    f.queue.runPending();
    QCOMPARE(activated.size(), 2);
    QCOMPARE(activated.last().data(), f.shared.preferences().window());
    QVERIFY(f.shared.isPreferencesWindowVisible());
}

void AppDelegateTest::hidden_preferences_are_left_alone()
{
    Fixture f;
    f.change(Settings::showDockIcon.key, true);
    f.queue.runPending();
    QVERIFY(f.virtualPlatform.activationPolicy.activated.isEmpty());

    f.delegate->openPreferences();
    f.shared.preferences().window()->close();
    f.change(Settings::showDockIcon.key, false);
    f.queue.runPending();
    QCOMPARE(f.virtualPlatform.activationPolicy.activated.size(), 1);
    QVERIFY(!f.shared.isPreferencesWindowVisible());
}

void AppDelegateTest::minimised_preferences_are_left_alone()
{
    Fixture f;
    f.delegate->openPreferences();
    f.shared.preferences().window()->showMinimized();
    QVERIFY(!f.shared.isPreferencesWindowVisible());
    f.change(Settings::showDockIcon.key, true);
    f.queue.runPending();
    QCOMPARE(f.virtualPlatform.activationPolicy.activated.size(), 1);
    QVERIFY(f.shared.preferences().window()->isMinimized());
}

void AppDelegateTest::every_settings_change_starts_or_stops_the_watcher()
{
    Fixture f;
    const auto &streams = f.virtualPlatform.fileEventStreams.streams;
    f.change(Settings::tintIntensity.key, 0.9);
    QCOMPARE(streams.size(), 2);
    QVERIFY(streams.last()->isRunning());

    f.change(Settings::autoAddScreenshots.key, false);
    QCOMPARE(streams.size(), 2);
    const QStringList ended = {u"start"_s, u"stop"_s, u"invalidate"_s};
    QCOMPARE(streams.last()->calls, ended);
    // There is no watcher left to stop.
    f.change(Settings::tintIntensity.key, 0.8);
    QCOMPARE(streams.last()->calls, ended);
    QCOMPARE(streams.size(), 2);

    f.change(Settings::autoAddScreenshots.key, true);
    QCOMPARE(streams.size(), 3);
    QVERIFY(streams.last()->isRunning());
}

void AppDelegateTest::a_settings_change_leaves_the_login_item()
{
    Fixture f;
    f.calls.clear();
    f.change(Settings::launchAtLogin.key, true);
    f.queue.runPending();
    QVERIFY(!f.calls.contains(u"isLoginItemEnabled"_s));
    QVERIFY(f.virtualPlatform.loginItem.calls.isEmpty());
}

void AppDelegateTest::the_appearance_pane_brings_a_hidden_shelf_and_takes_it_away()
{
    Fixture f;
    f.appearancePane(Fixture::active(true));
    QVERIFY(f.shelf.isVisible());
    QCOMPARE(f.shelf.alpha(), 0.0);
    f.queue.advance(0.22);
    QCOMPARE(f.shelf.alpha(), 1.0);

    f.appearancePane(Fixture::active(false));
    f.queue.advance(0.17);
    QVERIFY(f.shelf.isVisible());
    f.queue.advance(0.01);
    QVERIFY(!f.shelf.isVisible());
}

void AppDelegateTest::the_appearance_pane_leaves_a_visible_shelf()
{
    Fixture f;
    f.delegate->toggleShelf();
    f.queue.advance(1);
    f.appearancePane(Fixture::active(true));
    QCOMPARE(f.shelf.alpha(), 1.0);
    QCOMPARE(f.panels.ordersFront, 1);
    f.appearancePane(Fixture::active(false));
    f.queue.advance(10);
    QVERIFY(f.shelf.isVisible());

    // The state of the shelf when the pane last became active counts.
    f.delegate->toggleShelf();
    f.queue.advance(1);
    f.appearancePane(Fixture::active(true));
    f.queue.advance(1);
    QVERIFY(f.shelf.isVisible());
    f.appearancePane(Fixture::active(false));
    f.queue.advance(1);
    QVERIFY(!f.shelf.isVisible());
}

void AppDelegateTest::a_shelf_that_the_user_hides_meanwhile_stays_away()
{
    Fixture f;
    f.delegate->toggleShelf();
    f.queue.advance(1);
    f.appearancePane(Fixture::active(true));
    f.delegate->toggleShelf();
    f.queue.advance(1);
    f.appearancePane(Fixture::active(false));
    f.queue.advance(1);
    QVERIFY(!f.shelf.isVisible());
    QCOMPARE(f.panels.ordersFront, 1);
}

void AppDelegateTest::an_appearance_pane_that_is_left_and_entered_at_once_keeps_its_shelf()
{
    Fixture f;
    f.appearancePane(Fixture::active(true));
    f.queue.advance(1);
    f.appearancePane(Fixture::active(false));
    f.queue.advance(0.1);
    QVERIFY(f.shelf.isVisible());
    f.appearancePane(Fixture::active(true));
    QVERIFY(f.comesBack());
    // The pane still has to hide the shelf that it has shown.
    f.appearancePane(Fixture::active(false));
    f.queue.advance(1);
    QVERIFY(!f.shelf.isVisible());
}

void AppDelegateTest::anything_but_true_counts_as_leaving_data()
{
    QTest::addColumn<QVariantMap>("userInfo");
    QTest::newRow("false") << Fixture::active(false);
    QTest::newRow("no user info") << QVariantMap();
    QTest::newRow("another key") << QVariantMap{{u"Active"_s, true}};
    QTest::newRow("a number") << Fixture::active(1);
    QTest::newRow("a string") << Fixture::active(u"true"_s);
    QTest::newRow("an invalid value") << Fixture::active(QVariant());
}

void AppDelegateTest::anything_but_true_counts_as_leaving()
{
    QFETCH(QVariantMap, userInfo);
    Fixture f;
    f.appearancePane(Fixture::active(true));
    f.queue.advance(1);
    QVERIFY(f.shelf.isVisible());
    f.appearancePane(userInfo);
    f.queue.advance(1);
    QVERIFY(!f.shelf.isVisible());
}

void AppDelegateTest::leaving_without_having_come_hides_the_shelf()
{
    Fixture f;
    f.delegate->toggleShelf();
    f.queue.advance(1);
    f.appearancePane(Fixture::active(false));
    f.queue.advance(1);
    QVERIFY(!f.shelf.isVisible());
}

void AppDelegateTest::the_shelfs_gear_button_opens_the_preferences()
{
    Fixture f;
    f.shelf.openPrefs();
    QVERIFY(f.shared.isPreferencesWindowVisible());
    QCOMPARE(f.virtualPlatform.activationPolicy.activated.size(), 1);
}

void AppDelegateTest::a_changed_screen_moves_a_visible_shelf_only()
{
    Fixture f;
    f.virtualPlatform.screens.onChange();
    QCOMPARE(f.shelf.frame(), QRectF());
    f.delegate->toggleShelf();
    QCOMPARE(f.shelf.frame(), QRectF(1160, 318, 116, 164));
    f.virtualPlatform.screens.screens = {Screen{QRectF(0, 0, 1000, 600), QRectF(0, 0, 1000, 600), 1.0}};
    f.virtualPlatform.screens.onChange();
    QCOMPARE(f.shelf.frame(), QRectF(880, 218, 116, 164));
}

void AppDelegateTest::what_a_delegate_handed_out_does_nothing_after_it_has_gone()
{
    Fixture f;
    f.delegate->openPreferences();
    f.change(Settings::showDockIcon.key, true); // queues the showing of the preferences
    f.choose(Fixture::kLaunchAtLogin);          // queues a menu
    const auto screenshot = f.shared.screenshotWatcher().onNewScreenshot;
    const auto shelfDrop = f.shelf.onDropReceived;
    const auto cursorDrop = f.cursorShelf.onDrop;
    const auto screensChange = f.virtualPlatform.screens.onChange;
    const qsizetype activations = f.virtualPlatform.activationPolicy.activated.size();
    const qsizetype policies = f.virtualPlatform.activationPolicy.policies.size();
    QVERIFY(f.queue.pendingCount() >= 2);
    f.delegate.reset();

    f.queue.runPending();
    screenshot(file("/a.png"));
    shelfDrop();
    cursorDrop({file("/a.txt")});
    screensChange();
    f.shared.notifications().post(Notifications::openPreferences);
    f.shared.notifications().post(Notifications::settingsChanged);
    f.shared.notifications().post(Notifications::appearancePaneActive, Fixture::active(true));
    f.queue.advance(10);
    QCOMPARE(f.virtualPlatform.activationPolicy.activated.size(), activations);
    QCOMPARE(f.virtualPlatform.activationPolicy.policies.size(), policies);
    QCOMPARE(f.panels.ordersFront, 0);
}

PARKLET_TEST(AppDelegateTest)
#include "AppDelegateTest.moc"
