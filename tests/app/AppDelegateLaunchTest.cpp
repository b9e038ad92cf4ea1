// SPDX-License-Identifier: MIT
#include "settings/BuildInfo.h"
#include "tests/app/AppFixture.h"
#include "tests/app/LaunchFixture.h"
#include "tests/support/TestProgram.h"
#include "updates/BoundedFetch.h"

#include <QApplication>
#include <QTest>

using namespace Qt::StringLiterals;

// The launch: its order, the login item and the first update check.
class AppDelegateLaunchTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCoreApplication::setApplicationVersion(QString()); }

    void before_the_launch_nothing_is_shown_or_asked();
    void a_launch_with_the_permission_goes_in_its_order();
    void a_first_launch_without_the_permission_goes_in_its_order();
    void the_main_menu_is_there_before_the_status_item();
    void the_drag_monitor_knows_its_delegate_before_it_starts();
    void the_screenshot_watcher_is_wired_before_it_starts();
    void the_notifications_are_subscribed_after_the_watcher_and_before_the_login_item();
    void the_drop_callbacks_are_set_after_the_login_item_and_before_the_question();
    void a_launch_shows_no_shelf_and_leaves_the_activation_policy();
    void the_screenshot_watcher_starts_unless_the_setting_is_off();
    void what_is_made_on_first_use_is_not_there_after_the_launch();

    void an_automatic_check_is_made_at_launch_only_when_wanted();
    void an_automatic_check_is_silent_when_nothing_is_newer();
    void an_automatic_check_tells_of_a_newer_version();
    void a_check_compares_with_the_version_that_the_application_runs_as_data();
    void a_check_compares_with_the_version_that_the_application_runs_as();
    void the_answer_to_the_first_run_decides_on_this_launch_too();

    void the_login_item_is_brought_in_step_data();
    void the_login_item_is_brought_in_step();
    void a_login_item_that_refuses_is_ignored();
};

namespace {

using Fixture = LaunchFixture;

} // namespace

void AppDelegateLaunchTest::before_the_launch_nothing_is_shown_or_asked()
{
    Fixture f;
    QVERIFY(f.calls.isEmpty());
    QVERIFY(!f.shelf.isVisible());
    QVERIFY(!f.cursorShelf.isVisible());
    QVERIFY(!f.delegate->shelfShownByCurrentDrag);
    QVERIFY(!f.delegate->dropReceivedOnShelf);
    QVERIFY(!f.menuBar.mainMenu);
    QCOMPARE(f.queue.timerCount(), 0);
    QCOMPARE(f.queue.pendingCount(), 0);
}

void AppDelegateLaunchTest::a_launch_with_the_permission_goes_in_its_order()
{
    Fixture f;
    f.launch();
    QCOMPARE(f.calls, QStringList({kIconCall, kTrustCall, kDraggedCall, kUpCall, kStreamCall, kLoginCall}));
}

void AppDelegateLaunchTest::a_first_launch_without_the_permission_goes_in_its_order()
{
    Fixture f;
    f.values.clear();
    f.trust.trusted = false;
    f.launch();
    QCOMPARE(f.calls,
             QStringList({kIconCall, kTrustCall, kAlertCall, kStreamCall, kLoginCall, kSynchronizeCall, kAlertCall}));
    QCOMPARE(f.alerts.shown.at(0).messageText, u"Accessibility Permission Required"_s);
    QCOMPARE(f.alerts.shown.at(1).messageText, u"Check for updates automatically?"_s);
}

void AppDelegateLaunchTest::the_main_menu_is_there_before_the_status_item()
{
    Fixture f;
    bool hadMenu = false;
    f.at(kIconCall, [&] { hadMenu = f.menuBar.mainMenu != nullptr; });
    f.launch();
    QVERIFY(hadMenu);
    QCOMPARE(f.menuBar.mainMenu->actions().size(), 1);
    QCOMPARE(f.menuBar.mainMenu->actions().constFirst()->text(), u"Edit"_s);
}

void AppDelegateLaunchTest::the_drag_monitor_knows_its_delegate_before_it_starts()
{
    Fixture f;
    const DragMonitorDelegate *known = nullptr;
    QVERIFY(!f.shared.dragMonitor().delegate);
    f.at(kDraggedCall, [&] { known = f.shared.dragMonitor().delegate; });
    f.launch();
    QCOMPARE(known, f.delegate.get());
}

void AppDelegateLaunchTest::the_screenshot_watcher_is_wired_before_it_starts()
{
    Fixture f;
    bool wired = false;
    f.at(kStreamCall, [&] { wired = bool(f.shared.screenshotWatcher().onNewScreenshot); });
    f.launch();
    QVERIFY(wired);
    QCOMPARE(f.virtualPlatform.fileEventStreams.streams.first()->folder, f.home.path() + u"/Desktop"_s);
}

void AppDelegateLaunchTest::the_notifications_are_subscribed_after_the_watcher_and_before_the_login_item()
{
    const auto postAll = [](Fixture &f) {
        f.shared.notifications().post(Notifications::openPreferences);
        f.shared.notifications().post(Notifications::settingsChanged);
        f.shared.notifications().post(Notifications::appearancePaneActive, {{u"active"_s, true}});
    };
    Fixture early;
    early.at(kStreamCall, [&] { postAll(early); });
    early.launch();
    early.queue.runPending();
    QVERIFY(early.virtualPlatform.activationPolicy.activated.isEmpty());
    QVERIFY(early.virtualPlatform.activationPolicy.policies.isEmpty());
    QVERIFY(!early.shelf.isVisible());

    Fixture late;
    late.at(kLoginCall, [&] { postAll(late); });
    late.launch();
    QCOMPARE(late.virtualPlatform.activationPolicy.activated.size(), 1);
    QCOMPARE(late.virtualPlatform.activationPolicy.policies.size(), 1);
    QVERIFY(late.shelf.isVisible());
}

void AppDelegateLaunchTest::the_drop_callbacks_are_set_after_the_login_item_and_before_the_question()
{
    Fixture f;
    f.values.clear();
    bool early = true;
    bool late = false;
    f.at(kLoginCall, [&] { early = f.shelf.onDropReceived || f.cursorShelf.onDrop; });
    f.alerts.whileShown = [&] { late = f.shelf.onDropReceived && f.cursorShelf.onDrop; };
    f.launch();
    QVERIFY(!early);
    QVERIFY(late);
}

void AppDelegateLaunchTest::a_launch_shows_no_shelf_and_leaves_the_activation_policy()
{
    Fixture f;
    f.values.insert(Settings::showDockIcon.key, true);
    f.launch();
    f.queue.advance(60);
    QVERIFY(f.virtualPlatform.activationPolicy.policies.isEmpty());
    QVERIFY(f.virtualPlatform.activationPolicy.activated.isEmpty());
    QCOMPARE(f.panels.ordersFront, 0);
    // The stored choice takes effect at the next change of any setting.
    f.change(Settings::tintIntensity.key, 0.5);
    QCOMPARE(f.virtualPlatform.activationPolicy.policies, QList{ActivationPolicy::Policy::Regular});
}

void AppDelegateLaunchTest::the_screenshot_watcher_starts_unless_the_setting_is_off()
{
    Fixture on;
    on.launch();
    QCOMPARE(on.virtualPlatform.fileEventStreams.streams.size(), 1);
    QVERIFY(on.virtualPlatform.fileEventStreams.streams.first()->isRunning());

    Fixture off;
    off.values.insert(Settings::autoAddScreenshots.key, false);
    off.launch();
    QVERIFY(off.virtualPlatform.fileEventStreams.streams.isEmpty());
    QVERIFY(off.shared.screenshotWatcher().onNewScreenshot);
}

void AppDelegateLaunchTest::what_is_made_on_first_use_is_not_there_after_the_launch()
{
    Fixture f;
    f.values.clear();
    f.launch();
    QVERIFY(!f.shared.hasPreferences());
    QVERIFY(!f.shared.hasUpdateChecker());
    f.change(Settings::showDockIcon.key, true);
    f.queue.runPending();
    QVERIFY(!f.shared.hasPreferences());

    f.delegate->openPreferences();
    QVERIFY(f.shared.hasPreferences());
    QVERIFY(!f.shared.hasUpdateChecker());
    f.shared.versionURL = QUrl(u"http://127.0.0.1:1/version.json"_s);
    f.delegate->checkForUpdates();
    QVERIFY(f.shared.hasUpdateChecker());
}

void AppDelegateLaunchTest::an_automatic_check_is_made_at_launch_only_when_wanted()
{
    Fixture standard;
    QCOMPARE(standard.shared.versionURL, BuildInfo::versionURL());

    UpdateFixture f("0.1");
    f.launch();
    QVERIFY(!f.shared.updateChecker().findChild<BoundedFetch *>());

    UpdateFixture wanted("0.1");
    wanted.values.insert(Settings::autoCheckUpdates.key, true);
    wanted.launch();
    QVERIFY(wanted.shared.updateChecker().findChild<BoundedFetch *>());
    wanted.finish();
    QCOMPARE(wanted.server.requestLines.size(), 1);
}

void AppDelegateLaunchTest::an_automatic_check_is_silent_when_nothing_is_newer()
{
    UpdateFixture f("0.1");
    f.values.insert(Settings::autoCheckUpdates.key, true);
    f.launch();
    f.finish();
    QCOMPARE(f.server.requestLines.size(), 1);
    QVERIFY(f.alerts.shown.isEmpty());

    // A check that the user asks for is not silent.
    f.delegate->checkForUpdates();
    f.finish();
    QCOMPARE(f.server.requestLines.size(), 2);
    QCOMPARE(f.alerts.shown.size(), 1);
    QCOMPARE(f.alerts.shown.first().messageText, u"Parklet is up to date"_s);
}

void AppDelegateLaunchTest::an_automatic_check_tells_of_a_newer_version()
{
    UpdateFixture f("1000.0");
    f.values.insert(Settings::autoCheckUpdates.key, true);
    f.launch();
    f.finish();
    QCOMPARE(f.alerts.shown.size(), 1);
    QCOMPARE(f.alerts.shown.first().messageText, u"Parklet update available"_s);
}

void AppDelegateLaunchTest::a_check_compares_with_the_version_that_the_application_runs_as_data()
{
    QTest::addColumn<QString>("running");
    QTest::addColumn<QByteArray>("published");
    QTest::addColumn<QString>("told");
    const QString update = u"Parklet update available"_s;
    const QString upToDate = u"Parklet is up to date"_s;
    QTest::newRow("older") << u"7.0"_s << QByteArray("6.9") << upToDate;
    QTest::newRow("newer") << u"7.0"_s << QByteArray("7.1") << update;
    QTest::newRow("without a version, the same as 1.0") << QString() << QByteArray("1.0") << upToDate;
    QTest::newRow("without a version, newer than 1.0") << QString() << QByteArray("1.0.1") << update;
}

void AppDelegateLaunchTest::a_check_compares_with_the_version_that_the_application_runs_as()
{
    QFETCH(const QString, running);
    QFETCH(const QByteArray, published);
    QCoreApplication::setApplicationVersion(running);
    UpdateFixture f(published);
    f.launch();
    f.delegate->checkForUpdates();
    f.finish();
    QCOMPARE(f.alerts.shown.size(), 1);
    QTEST(f.alerts.shown.first().messageText, "told");
}

void AppDelegateLaunchTest::the_answer_to_the_first_run_decides_on_this_launch_too()
{
    UpdateFixture yes("0.1");
    yes.values.clear();
    yes.alerts.answers = {AlertAnswer{0, false}};
    yes.alerts.whileShown = [&yes] { QVERIFY(!yes.shared.updateChecker().findChild<BoundedFetch *>()); };
    yes.launch();
    yes.finish();
    QCOMPARE(yes.server.requestLines.size(), 1);

    UpdateFixture no("0.1");
    no.values.clear();
    no.alerts.answers = {AlertAnswer{1, true}};
    no.launch();
    QVERIFY(!no.shared.updateChecker().findChild<BoundedFetch *>());
}

void AppDelegateLaunchTest::the_login_item_is_brought_in_step_data()
{
    QTest::addColumn<bool>("wanted");
    QTest::addColumn<bool>("registered");
    QTest::addColumn<QStringList>("calls");
    QTest::newRow("neither") << false << false << QStringList();
    QTest::newRow("both") << true << true << QStringList();
    QTest::newRow("wanted only") << true << false << QStringList{u"enable"_s};
    QTest::newRow("registered only") << false << true << QStringList{u"disable"_s};
}

void AppDelegateLaunchTest::the_login_item_is_brought_in_step()
{
    QFETCH(bool, wanted);
    QFETCH(bool, registered);
    Fixture f;
    f.values.insert(Settings::launchAtLogin.key, wanted);
    f.virtualPlatform.loginItem.enabled = registered;
    f.launch();
    QTEST(f.virtualPlatform.loginItem.calls, "calls");
    QCOMPARE(f.virtualPlatform.loginItem.enabled, wanted);
    QCOMPARE(f.values.value(Settings::launchAtLogin.key), QVariant(wanted));
}

void AppDelegateLaunchTest::a_login_item_that_refuses_is_ignored()
{
    for (const bool wanted : {true, false}) {
        Fixture f;
        f.values.insert(Settings::launchAtLogin.key, wanted);
        f.virtualPlatform.loginItem.enabled = !wanted;
        f.virtualPlatform.loginItem.fails = true;
        f.launch();
        QCOMPARE(f.virtualPlatform.loginItem.calls.size(), 1);
        QCOMPARE(f.values.value(Settings::launchAtLogin.key), QVariant(wanted));
        QVERIFY(f.alerts.shown.isEmpty());
        QVERIFY(f.shelf.onDropReceived); // the launch continued
    }
}

PARKLET_TEST(AppDelegateLaunchTest)
#include "AppDelegateLaunchTest.moc"
