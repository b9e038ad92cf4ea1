// SPDX-License-Identifier: MIT
#include "tests/app/AppFixture.h"
#include "tests/app/LaunchFixture.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QTest>

using namespace Qt::StringLiterals;

// The questions at the launch: about the permission, and about update checks.
class LaunchQuestionsTest : public QObject {
    Q_OBJECT

private slots:
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
};

namespace {

using Fixture = LaunchFixture;

} // namespace

void LaunchQuestionsTest::the_permission_is_asked_for_in_these_words()
{
    Fixture f;
    f.trust.trusted = false;
    f.launch();
    QCOMPARE(f.alerts.shown.size(), 1);
    const Alert &alert = f.alerts.shown.first();
    QCOMPARE(alert.messageText, u"Accessibility Permission Required"_s);
    QCOMPARE(alert.informativeText, u"Parklet needs Accessibility access to detect when you're dragging files. "
                                    "Please grant access in System Settings."_s);
    QCOMPARE(alert.buttons, QStringList({u"Open System Settings"_s, u"Later"_s}));
    QVERIFY(alert.checkboxTitle.isEmpty());
    QVERIFY(alert.icon.isNull());
    QVERIFY(!alert.dark);
    QVERIFY(!alert.activates);
}

void LaunchQuestionsTest::only_the_first_answer_opens_the_system_settings_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<int>("opened");
    QTest::newRow("Open System Settings") << 0 << 1;
    QTest::newRow("Later") << 1 << 0;
    QTest::newRow("closed") << -1 << 0;
}

void LaunchQuestionsTest::only_the_first_answer_opens_the_system_settings()
{
    QFETCH(int, button);
    Fixture f;
    f.trust.trusted = false;
    f.alerts.answers = {AlertAnswer{button, false}};
    f.alerts.whileShown = [&f] { QCOMPARE(f.trust.settingsOpened, 0); };
    f.launch();
    QTEST(f.trust.settingsOpened, "opened");
    // The program waits for the permission after either answer.
    QCOMPARE(f.queue.timerCount(), 1);
    f.trust.trusted = true;
    f.queue.advance(5);
    QCOMPARE(f.monitors.count(LeftMouseDragged), 1);
}

void LaunchQuestionsTest::the_permission_is_looked_for_every_five_seconds_from_the_answer_on()
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

void LaunchQuestionsTest::a_permission_granted_later_starts_drag_detection_once()
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

void LaunchQuestionsTest::the_permission_is_waited_for_without_end_and_without_a_second_alert()
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

void LaunchQuestionsTest::without_the_permission_everything_else_works()
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

void LaunchQuestionsTest::quitting_while_the_permission_is_asked_for_ends_the_launch()
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

void LaunchQuestionsTest::a_delegate_that_has_gone_looks_for_no_permission()
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

void LaunchQuestionsTest::the_first_run_asks_in_these_words()
{
    Fixture f;
    f.values.clear();
    f.launch();
    QCOMPARE(f.alerts.shown.size(), 1);
    const Alert &alert = f.alerts.shown.first();
    QCOMPARE(alert.messageText, u"Check for updates automatically?"_s);
    QCOMPARE(alert.informativeText, u"Should Parklet automatically check for updates? "
                                    "You can always check manually from the Parklet menu."_s);
    QCOMPARE(alert.checkboxTitle, u"Automatically download and install updates"_s);
    QCOMPARE(alert.buttons, QStringList({u"Check Automatically"_s, u"Don't Check"_s}));
    QVERIFY(!alert.icon.isNull());
    QVERIFY(alert.dark);
    QVERIFY(alert.activates);
    QCOMPARE(f.virtualPlatform.appearance.symbolRequests.last().first, u"AppIcon"_s);
}

void LaunchQuestionsTest::without_an_image_of_its_own_the_question_shows_the_applications_icon()
{
    Fixture f;
    f.values.clear();
    f.virtualPlatform.appearance.missingSymbols = {u"AppIcon"_s};
    f.launch();
    QVERIFY(f.alerts.shown.constFirst().icon.isNull()); // null means the application's own icon
}

void LaunchQuestionsTest::the_answer_to_the_first_run_is_stored_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<bool>("wanted");
    QTest::newRow("Check Automatically") << 0 << true;
    QTest::newRow("Don't Check") << 1 << false;
    QTest::newRow("closed") << -1 << false;
}

void LaunchQuestionsTest::the_answer_to_the_first_run_is_stored()
{
    QFETCH(int, button);
    QFETCH(bool, wanted);
    UpdateFixture f("0.1");
    // The answer also replaces a value that an earlier version has stored.
    f.values = {{Settings::autoCheckUpdates.key, !wanted}};
    f.alerts.answers = {AlertAnswer{button, false}};
    f.launch();
    QCOMPARE(f.values.value(Settings::autoCheckUpdates.key), QVariant(wanted));
    QCOMPARE(f.values.value(Settings::autoCheckUpdates.key).typeId(), static_cast<int>(QMetaType::Bool));
    QCOMPARE(f.values.value(Settings::hasShownUpdatePrompt.key).typeId(), static_cast<int>(QMetaType::Bool));
}

void LaunchQuestionsTest::the_question_counts_as_asked_before_it_is_shown()
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
    // The flag is on disk, so nothing that happens during the question can undo it.
    QVERIFY(askedOnDisk);
    QCOMPARE(f.calls.mid(f.calls.size() - 2), QStringList({kSynchronizeCall, kAlertCall}));
    QVERIFY(!answer.isValid());
    QCOMPARE(f.virtualPlatform.userDefaults.writes,
             QStringList({Settings::hasShownUpdatePrompt.key, Settings::autoCheckUpdates.key}));
}

void LaunchQuestionsTest::the_question_is_asked_once_ever()
{
    Fixture f;
    f.values.clear();
    QMap<QString, QVariant> whileAsked;
    f.alerts.whileShown = [&] { whileAsked = f.values; };
    f.launch();
    QCOMPARE(f.alerts.shown.size(), 1);

    // The stored settings if the application is quit during the question.
    for (const auto &stored : {f.values, whileAsked}) {
        Fixture next;
        next.values = stored;
        next.launch();
        QVERIFY(next.alerts.shown.isEmpty());
        QVERIFY(next.virtualPlatform.userDefaults.writes.isEmpty());
    }
}

void LaunchQuestionsTest::quitting_while_the_question_is_shown_stores_no_answer()
{
    Fixture f;
    f.values = {{Settings::autoCheckUpdates.key, true}};
    f.alerts.answers = {AlertAnswer{1, false}};
    QVERIFY(f.launchAndQuitAtAlert(1));
    QCOMPARE(f.virtualPlatform.userDefaults.writes, QStringList{Settings::hasShownUpdatePrompt.key});
    QVERIFY(!f.shared.hasUpdateChecker());
}

void LaunchQuestionsTest::the_check_box_of_the_question_changes_nothing()
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

PARKLET_TEST(LaunchQuestionsTest)
#include "LaunchQuestionsTest.moc"
