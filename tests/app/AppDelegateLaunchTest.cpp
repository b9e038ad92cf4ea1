// SPDX-License-Identifier: MIT
#include "settings/BuildInfo.h"
#include "tests/app/AppFixture.h"
#include "tests/support/LoopbackServer.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>

// The launch: its order, the permission, the question of the first run, the login item and the first update check.
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

    void the_permission_is_asked_for_in_these_words();
    void only_the_first_answer_opens_the_system_settings_data();
    void only_the_first_answer_opens_the_system_settings();
    void the_permission_is_looked_for_every_five_seconds_from_the_answer_on();
    void a_permission_granted_later_starts_drag_detection_once();
    void the_permission_is_waited_for_without_end_and_without_a_second_alert();
    void without_the_permission_everything_else_works();
    void quitting_while_the_permission_is_asked_for_ends_the_launch();
    void a_delegate_that_has_gone_looks_for_no_permission();

    void the_first_run_asks_in_these_words();
    void without_an_image_of_its_own_the_question_shows_the_applications_icon();
    void the_answer_to_the_first_run_is_stored_data();
    void the_answer_to_the_first_run_is_stored();
    void the_question_counts_as_asked_before_it_is_shown();
    void the_question_is_asked_once_ever();
    void quitting_while_the_question_is_shown_stores_no_answer();
    void the_check_box_of_the_question_changes_nothing();

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

const QString kIconCall = QStringLiteral("makeStatusItem");
const QString kTrustCall = QStringLiteral("isProcessTrusted");
const QString kDraggedCall = QStringLiteral("addMonitor 64");
const QString kUpCall = QStringLiteral("addMonitor 4");
const QString kStreamCall = QStringLiteral("openStream");
const QString kLoginCall = QStringLiteral("isLoginItemEnabled");
const QString kSynchronizeCall = QStringLiteral("synchronize");
const QString kAlertCall = QStringLiteral("alert");

struct Fixture : AppFixture {
    VirtualAlerts &alerts = virtualPlatform.alerts;
    VirtualAccessibilityTrust &trust = virtualPlatform.accessibilityTrust;
    VirtualMenuBar &menuBar = virtualPlatform.menuBar;
    VirtualEventMonitors &monitors = virtualPlatform.eventMonitors;

    // Runs `work` the first time that the service is called.
    void at(const QString &wanted, std::function<void()> work)
    {
        virtualPlatform.log.onCall = [wanted, work = std::move(work), done = false](const QString &call) mutable {
            if (done || call != wanted)
                return;
            done = true;
            work();
        };
    }

    // Launches in a main loop that ends when the user, while the alert of that number is shown, quits. True when it
    // was quitting that ended the loop.
    bool launchAndQuitAtAlert(qsizetype number)
    {
        constexpr int kNotQuit = 1;
        alerts.whileShown = [this, number] {
            if (alerts.shown.size() == number)
                QCoreApplication::quit();
        };
        QTimer::singleShot(0, &shelf, [this] { launch(); });
        QTimer::singleShot(10'000, &shelf, [] { QCoreApplication::exit(kNotQuit); });
        return QCoreApplication::exec() == 0;
    }
};

// An application whose updates are on a server of the test's own.
struct UpdateFixture : Fixture {
    explicit UpdateFixture(const QByteArray &version)
    {
        shared.versionURL = server.url();
        server.onRequest = [version](QTcpSocket &socket, const QByteArray &) {
            LoopbackServer::reply(socket, "200 OK",
                                  R"({"version": ")" + version + R"(", "url": "https://example.com/get"})");
        };
    }

    // Waits until every request is over and lets the program act on it.
    void finish()
    {
        [this] {
            QTRY_VERIFY_WITH_TIMEOUT(shared.updateChecker().findChildren<QNetworkReply *>().isEmpty(), 20'000);
        }();
        queue.runPending();
    }

    LoopbackServer server;
};

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
    QCOMPARE(f.alerts.shown.at(0).messageText, QStringLiteral("Accessibility Permission Required"));
    QCOMPARE(f.alerts.shown.at(1).messageText, QStringLiteral("Check for updates automatically?"));
}

void AppDelegateLaunchTest::the_main_menu_is_there_before_the_status_item()
{
    Fixture f;
    bool hadMenu = false;
    f.at(kIconCall, [&] { hadMenu = f.menuBar.mainMenu != nullptr; });
    f.launch();
    QVERIFY(hadMenu);
    QCOMPARE(f.menuBar.mainMenu->actions().size(), 1);
    QCOMPARE(f.menuBar.mainMenu->actions().constFirst()->text(), QStringLiteral("Edit"));
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
    QCOMPARE(f.virtualPlatform.fileEventStreams.streams.first()->folder, f.home.path() + QStringLiteral("/Desktop"));
}

void AppDelegateLaunchTest::the_notifications_are_subscribed_after_the_watcher_and_before_the_login_item()
{
    const auto postAll = [](Fixture &f) {
        f.shared.notifications().post(Notifications::openPreferences);
        f.shared.notifications().post(Notifications::settingsChanged);
        f.shared.notifications().post(Notifications::appearancePaneActive, {{QStringLiteral("active"), true}});
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
    f.shared.versionURL = QUrl(QStringLiteral("http://127.0.0.1:1/version.json"));
    f.delegate->checkForUpdates();
    QVERIFY(f.shared.hasUpdateChecker());
}

void AppDelegateLaunchTest::the_permission_is_asked_for_in_these_words()
{
    Fixture f;
    f.trust.trusted = false;
    f.launch();
    QCOMPARE(f.alerts.shown.size(), 1);
    const Alert &alert = f.alerts.shown.first();
    QCOMPARE(alert.messageText, QStringLiteral("Accessibility Permission Required"));
    QCOMPARE(alert.informativeText,
             QStringLiteral("Parklet needs Accessibility access to detect when you're dragging files. "
                            "Please grant access in System Settings."));
    QCOMPARE(alert.buttons, QStringList({QStringLiteral("Open System Settings"), QStringLiteral("Later")}));
    QVERIFY(alert.checkboxTitle.isEmpty());
    QVERIFY(alert.icon.isNull());
    QVERIFY(!alert.dark);
    QVERIFY(!alert.activates);
}

void AppDelegateLaunchTest::only_the_first_answer_opens_the_system_settings_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<int>("opened");
    QTest::newRow("Open System Settings") << 0 << 1;
    QTest::newRow("Later") << 1 << 0;
    QTest::newRow("closed") << -1 << 0;
}

void AppDelegateLaunchTest::only_the_first_answer_opens_the_system_settings()
{
    QFETCH(int, button);
    Fixture f;
    f.trust.trusted = false;
    f.alerts.answers = {AlertAnswer{button, false}};
    f.alerts.whileShown = [&f] { QCOMPARE(f.trust.settingsOpened, 0); };
    f.launch();
    QTEST(f.trust.settingsOpened, "opened");
    // Whatever was chosen, the permission is waited for.
    QCOMPARE(f.queue.timerCount(), 1);
    f.trust.trusted = true;
    f.queue.advance(5);
    QCOMPARE(f.monitors.count(LeftMouseDragged), 1);
}

void AppDelegateLaunchTest::the_permission_is_looked_for_every_five_seconds_from_the_answer_on()
{
    Fixture f;
    f.trust.trusted = false;
    f.alerts.whileShown = [&f] { f.queue.advance(103); };
    f.launch();
    QCOMPARE(f.trust.checks, 1);
    f.queue.advance(4.99);
    QCOMPARE(f.trust.checks, 1);
    f.queue.advance(0.01);
    QCOMPARE(f.trust.checks, 2);
    f.queue.advance(4.99);
    QCOMPARE(f.trust.checks, 2);
    f.queue.advance(0.01);
    QCOMPARE(f.trust.checks, 3);
}

void AppDelegateLaunchTest::a_permission_granted_later_starts_drag_detection_once()
{
    Fixture f;
    f.trust.trusted = false;
    f.launch();
    f.queue.advance(7);
    QCOMPARE(f.monitors.count(LeftMouseDragged | LeftMouseUp), 0);
    QVERIFY(!f.shared.dragMonitor().delegate);
    f.trust.trusted = true;
    f.queue.advance(2.99);
    QCOMPARE(f.monitors.count(LeftMouseDragged | LeftMouseUp), 0);
    f.queue.advance(0.01);
    QCOMPARE(f.monitors.count(LeftMouseDragged), 1);
    QCOMPARE(f.monitors.count(LeftMouseUp), 1);
    QCOMPARE(f.shared.dragMonitor().delegate.data(), f.delegate.get());

    // The polling is over.
    QCOMPARE(f.queue.timerCount(), 0);
    const int checks = f.trust.checks;
    f.queue.advance(60);
    QCOMPARE(f.trust.checks, checks);
    QCOMPARE(f.monitors.count(LeftMouseDragged), 1);

    f.virtualPlatform.dragPasteboard.urls = {file("/a.txt")};
    f.monitors.send(LeftMouseDragged);
    f.queue.runPending();
    QVERIFY(f.shelf.isVisible());
}

void AppDelegateLaunchTest::the_permission_is_waited_for_without_end_and_without_a_second_alert()
{
    Fixture f;
    f.trust.trusted = false;
    f.launch();
    f.queue.advance(5000);
    QCOMPARE(f.trust.checks, 1001);
    QCOMPARE(f.alerts.shown.size(), 1);
    QCOMPARE(f.trust.settingsOpened, 0);
    f.trust.trusted = true;
    f.queue.advance(5);
    QCOMPARE(f.monitors.count(LeftMouseDragged), 1);
}

void AppDelegateLaunchTest::without_the_permission_everything_else_works()
{
    Fixture f;
    f.trust.trusted = false;
    f.launch();
    QVERIFY(f.virtualPlatform.statusBar.item);
    QCOMPARE(f.virtualPlatform.fileEventStreams.streams.size(), 1);
    f.delegate->toggleShelf();
    QVERIFY(f.shelf.isVisible());
    f.delegate->openPreferences();
    QVERIFY(f.shared.isPreferencesWindowVisible());
}

void AppDelegateLaunchTest::quitting_while_the_permission_is_asked_for_ends_the_launch()
{
    for (const int button : {0, 1}) {
        Fixture f;
        f.values = {{Settings::autoCheckUpdates.key, true}};
        f.trust.trusted = false;
        f.alerts.answers = {AlertAnswer{button, false}};
        QVERIFY(f.launchAndQuitAtAlert(1));
        QCOMPARE(f.alerts.shown.size(), 1);
        QVERIFY(f.virtualPlatform.userDefaults.writes.isEmpty());
        QCOMPARE(f.calls, QStringList({kIconCall, kTrustCall, kAlertCall}));
        QCOMPARE(f.trust.settingsOpened, 0);
        QCOMPARE(f.queue.timerCount(), 0);
        QVERIFY(!f.shared.hasUpdateChecker());
    }
}

void AppDelegateLaunchTest::a_delegate_that_has_gone_looks_for_no_permission()
{
    Fixture f;
    f.trust.trusted = false;
    f.launch();
    f.delegate.reset();
    f.trust.trusted = true;
    f.queue.advance(20);
    QCOMPARE(f.trust.checks, 1);
    QCOMPARE(f.monitors.count(LeftMouseDragged), 0);
}

void AppDelegateLaunchTest::the_first_run_asks_in_these_words()
{
    Fixture f;
    f.values.clear();
    f.launch();
    QCOMPARE(f.alerts.shown.size(), 1);
    const Alert &alert = f.alerts.shown.first();
    QCOMPARE(alert.messageText, QStringLiteral("Check for updates automatically?"));
    QCOMPARE(alert.informativeText, QStringLiteral("Should Parklet automatically check for updates? "
                                                   "You can always check manually from the Parklet menu."));
    QCOMPARE(alert.checkboxTitle, QStringLiteral("Automatically download and install updates"));
    QCOMPARE(alert.buttons, QStringList({QStringLiteral("Check Automatically"), QStringLiteral("Don't Check")}));
    QVERIFY(!alert.icon.isNull());
    QVERIFY(alert.dark);
    QVERIFY(alert.activates);
    QCOMPARE(f.virtualPlatform.appearance.symbolRequests.last().first, QStringLiteral("AppIcon"));
}

void AppDelegateLaunchTest::without_an_image_of_its_own_the_question_shows_the_applications_icon()
{
    Fixture f;
    f.values.clear();
    f.virtualPlatform.appearance.missingSymbols = {QStringLiteral("AppIcon")};
    f.launch();
    QVERIFY(f.alerts.shown.constFirst().icon.isNull()); // which stands for the application's own
}

void AppDelegateLaunchTest::the_answer_to_the_first_run_is_stored_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<bool>("wanted");
    QTest::newRow("Check Automatically") << 0 << true;
    QTest::newRow("Don't Check") << 1 << false;
    QTest::newRow("closed") << -1 << false;
}

void AppDelegateLaunchTest::the_answer_to_the_first_run_is_stored()
{
    QFETCH(int, button);
    QFETCH(bool, wanted);
    UpdateFixture f("0.1");
    // Also over what an earlier version may have stored.
    f.values = {{Settings::autoCheckUpdates.key, !wanted}};
    f.alerts.answers = {AlertAnswer{button, false}};
    f.launch();
    QCOMPARE(f.values.value(Settings::autoCheckUpdates.key), QVariant(wanted));
    QCOMPARE(f.values.value(Settings::autoCheckUpdates.key).typeId(), static_cast<int>(QMetaType::Bool));
    QCOMPARE(f.values.value(Settings::hasShownUpdatePrompt.key).typeId(), static_cast<int>(QMetaType::Bool));
}

void AppDelegateLaunchTest::the_question_counts_as_asked_before_it_is_shown()
{
    Fixture f;
    f.values.clear();
    bool asked = false;
    bool askedOnDisk = false;
    QVariant answer = true;
    f.at(kSynchronizeCall, [&] { askedOnDisk = f.values.value(Settings::hasShownUpdatePrompt.key).toBool(); });
    f.alerts.whileShown = [&] {
        asked = f.values.value(Settings::hasShownUpdatePrompt.key).toBool();
        answer = f.values.value(Settings::autoCheckUpdates.key);
    };
    f.launch();
    QVERIFY(asked);
    // Not only set: nothing that happens while the question is shown can undo it.
    QVERIFY(askedOnDisk);
    QCOMPARE(f.calls.mid(f.calls.size() - 2), QStringList({kSynchronizeCall, kAlertCall}));
    QVERIFY(!answer.isValid());
    QCOMPARE(f.virtualPlatform.userDefaults.writes,
             QStringList({Settings::hasShownUpdatePrompt.key, Settings::autoCheckUpdates.key}));
}

void AppDelegateLaunchTest::the_question_is_asked_once_ever()
{
    Fixture f;
    f.values.clear();
    QMap<QString, QVariant> whileAsked;
    f.alerts.whileShown = [&] { whileAsked = f.values; };
    f.launch();
    QCOMPARE(f.alerts.shown.size(), 1);

    // What is stored when the application is quit with the question on screen.
    for (const auto &stored : {f.values, whileAsked}) {
        Fixture next;
        next.values = stored;
        next.launch();
        QVERIFY(next.alerts.shown.isEmpty());
        QVERIFY(next.virtualPlatform.userDefaults.writes.isEmpty());
    }
}

void AppDelegateLaunchTest::quitting_while_the_question_is_shown_stores_no_answer()
{
    Fixture f;
    f.values = {{Settings::autoCheckUpdates.key, true}};
    f.alerts.answers = {AlertAnswer{1, false}};
    QVERIFY(f.launchAndQuitAtAlert(1));
    QCOMPARE(f.virtualPlatform.userDefaults.writes, QStringList{Settings::hasShownUpdatePrompt.key});
    QVERIFY(!f.shared.hasUpdateChecker());
}

void AppDelegateLaunchTest::the_check_box_of_the_question_changes_nothing()
{
    QList<QMap<QString, QVariant>> stored;
    for (const bool on : {false, true}) {
        Fixture f;
        f.values.clear();
        f.alerts.answers = {AlertAnswer{1, on}};
        f.launch();
        stored.append(f.values);
    }
    QCOMPARE(stored.first(), stored.last());
    QCOMPARE(stored.first().keys(), QStringList({Settings::autoCheckUpdates.key, Settings::hasShownUpdatePrompt.key}));
}

void AppDelegateLaunchTest::an_automatic_check_is_made_at_launch_only_when_wanted()
{
    Fixture standard;
    QCOMPARE(standard.shared.versionURL, BuildInfo::versionURL());

    UpdateFixture f("0.1");
    f.launch();
    QVERIFY(!f.shared.updateChecker().findChild<QNetworkAccessManager *>());

    UpdateFixture wanted("0.1");
    wanted.values.insert(Settings::autoCheckUpdates.key, true);
    wanted.launch();
    QVERIFY(wanted.shared.updateChecker().findChild<QNetworkReply *>());
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

    // One that the user asks for is not.
    f.delegate->checkForUpdates();
    f.finish();
    QCOMPARE(f.server.requestLines.size(), 2);
    QCOMPARE(f.alerts.shown.size(), 1);
    QCOMPARE(f.alerts.shown.first().messageText, QStringLiteral("Parklet is up to date"));
}

void AppDelegateLaunchTest::an_automatic_check_tells_of_a_newer_version()
{
    UpdateFixture f("1000.0");
    f.values.insert(Settings::autoCheckUpdates.key, true);
    f.launch();
    f.finish();
    QCOMPARE(f.alerts.shown.size(), 1);
    QCOMPARE(f.alerts.shown.first().messageText, QStringLiteral("Parklet update available"));
}

void AppDelegateLaunchTest::a_check_compares_with_the_version_that_the_application_runs_as_data()
{
    QTest::addColumn<QString>("running");
    QTest::addColumn<QByteArray>("published");
    QTest::addColumn<QString>("told");
    const QString update = QStringLiteral("Parklet update available");
    const QString upToDate = QStringLiteral("Parklet is up to date");
    QTest::newRow("older") << QStringLiteral("7.0") << QByteArray("6.9") << upToDate;
    QTest::newRow("newer") << QStringLiteral("7.0") << QByteArray("7.1") << update;
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
    yes.alerts.whileShown = [&yes] { QVERIFY(!yes.shared.updateChecker().findChild<QNetworkAccessManager *>()); };
    yes.launch();
    yes.finish();
    QCOMPARE(yes.server.requestLines.size(), 1);

    UpdateFixture no("0.1");
    no.values.clear();
    no.alerts.answers = {AlertAnswer{1, true}};
    no.launch();
    QVERIFY(!no.shared.updateChecker().findChild<QNetworkAccessManager *>());
}

void AppDelegateLaunchTest::the_login_item_is_brought_in_step_data()
{
    QTest::addColumn<bool>("wanted");
    QTest::addColumn<bool>("registered");
    QTest::addColumn<QStringList>("calls");
    QTest::newRow("neither") << false << false << QStringList();
    QTest::newRow("both") << true << true << QStringList();
    QTest::newRow("wanted only") << true << false << QStringList{QStringLiteral("enable")};
    QTest::newRow("registered only") << false << true << QStringList{QStringLiteral("disable")};
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
        QVERIFY(f.shelf.onDropReceived); // the launch went on
    }
}

PARKLET_TEST(AppDelegateLaunchTest)
#include "AppDelegateLaunchTest.moc"
