// SPDX-License-Identifier: MIT
#include "tests/support/TestProgram.h"
#include "tests/updates/CheckerFixture.h"

#include <csignal>

#include <sys/wait.h>
#include <unistd.h>

class UpdateCheckerTest : public QObject {
    Q_OBJECT

private slots:
    void nothing_is_made_before_the_first_check();
    void an_address_that_is_not_valid_is_fatal();
    void a_newer_version_is_told_whoever_asked_data();
    void a_newer_version_is_told_whoever_asked();
    void the_first_button_opens_the_download_page();
    void any_other_answer_opens_nothing();
    void the_same_or_an_older_version_is_told_to_the_user_only_data();
    void the_same_or_an_older_version_is_told_to_the_user_only();
    void every_check_asks_the_server();
    void nothing_is_remembered();
    void two_quick_checks_may_show_two_alerts();
    void a_check_during_an_alert_shows_a_second_one();
    void the_alert_comes_in_a_later_turn_of_the_main_loop();
    void a_checker_that_is_gone_shows_nothing();
    void a_checker_that_goes_during_the_request_shows_nothing();
    void a_checker_that_goes_during_the_alert_still_opens_the_page();
};

void UpdateCheckerTest::nothing_is_made_before_the_first_check()
{
    CheckerFixture f;
    QVERIFY(f.checker().children().isEmpty());
    f.check();
    f.check();
    // Nor is anything left of one.
    QCOMPARE(f.server.requestLines.size(), 2);
    QTRY_VERIFY_WITH_TIMEOUT(f.checker().children().isEmpty(), kPatience);
}

void UpdateCheckerTest::an_address_that_is_not_valid_is_fatal()
{
    for (const QString &address : {QString(), u"https://a b/"_s, u"https://[::1"_s}) {
        const pid_t child = fork();
        if (child == 0) {
            // Suppress the message, a stack trace and the report of a failed test.
            qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
            signal(SIGABRT, SIG_DFL);
            VirtualPlatform virtualPlatform;
            const UpdateChecker checker(virtualPlatform.platform, QUrl(address, QUrl::StrictMode), u"1.0"_s);
            _exit(0);
        }
        int status = 0;
        QCOMPARE(waitpid(child, &status, 0), child);
        QVERIFY(WIFSIGNALED(status));
        QCOMPARE(WTERMSIG(status), SIGABRT);
    }
}

void UpdateCheckerTest::a_newer_version_is_told_whoever_asked_data()
{
    QTest::addColumn<WhenUpToDate>("whenUpToDate");
    QTest::newRow("the user") << WhenUpToDate::SaySo;
    QTest::newRow("the program") << WhenUpToDate::SayNothing;
}

void UpdateCheckerTest::a_newer_version_is_told_whoever_asked()
{
    QFETCH(const WhenUpToDate, whenUpToDate);
    CheckerFixture f;
    QCOMPARE(f.check(whenUpToDate), kUpdate);
    QCOMPARE(f.alerts.shown.first().informativeText, u"Version 2.0 is available.\n\nRelease notes: Faster.\nBetter."_s);
    QCOMPARE(f.alerts.shown.first().buttons, (QStringList{u"Download Update"_s, u"Later"_s}));
}

void UpdateCheckerTest::the_first_button_opens_the_download_page()
{
    CheckerFixture f;
    f.alerts.answers = {AlertAnswer{0, false}};
    f.check();
    QCOMPARE(f.virtualPlatform.workspace.opened, QList<QUrl>{QUrl(u"https://example.com/get"_s)});
}

void UpdateCheckerTest::any_other_answer_opens_nothing()
{
    CheckerFixture f;
    f.alerts.answers = {AlertAnswer{1, false}, AlertAnswer{-1, false}};
    f.check();
    f.check();
    QCOMPARE(f.alerts.shown.size(), 2);
    QVERIFY(f.virtualPlatform.workspace.opened.isEmpty());
}

void UpdateCheckerTest::the_same_or_an_older_version_is_told_to_the_user_only_data()
{
    QTest::addColumn<QByteArray>("version");
    QTest::newRow("the same") << QByteArray("1.9");
    QTest::newRow("the same, spelled otherwise") << QByteArray("1.09");
    QTest::newRow("older") << QByteArray("1.8.99");
    QTest::newRow("older, as a blank comes before a digit") << QByteArray(" 2.0");
    QTest::newRow("empty") << QByteArray();
}

void UpdateCheckerTest::the_same_or_an_older_version_is_told_to_the_user_only()
{
    QFETCH(const QByteArray, version);
    CheckerFixture f(recordOf(version));
    f.alerts.answers = {AlertAnswer{0, false}};
    QCOMPARE(f.check(WhenUpToDate::SayNothing), QStringList());
    QCOMPARE(f.check(WhenUpToDate::SaySo), kUpToDate);
    QVERIFY(f.virtualPlatform.workspace.opened.isEmpty());
}

void UpdateCheckerTest::every_check_asks_the_server()
{
    CheckerFixture f;
    f.server.onRequest = [](QTcpSocket &socket, const QByteArray &) {
        LoopbackServer::reply(socket, "200 OK", recordOf("1.0"), "Cache-Control: no-store\r\n");
    };
    f.check();
    f.check();
    QCOMPARE(f.server.requestLines, (QList<QByteArray>(2, "GET /version.json HTTP/1.1")));
    QCOMPARE(f.messages(), kUpToDate + kUpToDate);
}

void UpdateCheckerTest::nothing_is_remembered()
{
    CheckerFixture f;
    f.alerts.answers = {AlertAnswer{0, false}, AlertAnswer{1, false}};
    f.check(WhenUpToDate::SayNothing);
    f.check();
    QCOMPARE(f.check(), kUpdate + kUpdate + kUpdate);
    QVERIFY(f.virtualPlatform.userDefaults.writes.isEmpty());
}

void UpdateCheckerTest::two_quick_checks_may_show_two_alerts()
{
    CheckerFixture f(recordOf("1.9"));
    f.checker().check(WhenUpToDate::SaySo);
    f.checker().check(WhenUpToDate::SayNothing);
    f.checker().check(WhenUpToDate::SaySo);
    f.finish();
    QCOMPARE(f.server.requestLines.size(), 3);
    QCOMPARE(f.messages(), kUpToDate + kUpToDate);
}

void UpdateCheckerTest::a_check_during_an_alert_shows_a_second_one()
{
    CheckerFixture f;
    bool nested = false;
    f.alerts.whileShown = [&] {
        if (std::exchange(nested, true))
            return;
        f.check();
    };
    f.alerts.answers = {AlertAnswer{0, false}, AlertAnswer{0, false}};
    QCOMPARE(f.check(), kUpdate + kUpdate);
    QCOMPARE(f.virtualPlatform.workspace.opened.size(), 2);
}

void UpdateCheckerTest::the_alert_comes_in_a_later_turn_of_the_main_loop()
{
    CheckerFixture f;
    f.checker().check(WhenUpToDate::SaySo);
    QTRY_COMPARE_WITH_TIMEOUT(f.virtualPlatform.mainQueue.pendingCount(), 1, kPatience);
    QCOMPARE(f.messages(), QStringList());
    f.virtualPlatform.mainQueue.runPending();
    QCOMPARE(f.messages(), kUpdate);
}

void UpdateCheckerTest::a_checker_that_is_gone_shows_nothing()
{
    CheckerFixture f;
    f.checker().check(WhenUpToDate::SaySo);
    QTRY_COMPARE_WITH_TIMEOUT(f.virtualPlatform.mainQueue.pendingCount(), 1, kPatience);
    f.made.reset();
    f.finish();
    QCOMPARE(f.messages(), QStringList());
}

void UpdateCheckerTest::a_checker_that_goes_during_the_request_shows_nothing()
{
    CheckerFixture f;
    bool closed = false;
    f.server.onRequest = [&](QTcpSocket &socket, const QByteArray &) {
        QObject::connect(&socket, &QTcpSocket::disconnected, &socket, [&closed] { closed = true; });
    };
    f.checker().check(WhenUpToDate::SaySo);
    QTRY_COMPARE_WITH_TIMEOUT(f.server.requestLines.size(), 1, kPatience);
    f.made.reset();
    QTRY_VERIFY_WITH_TIMEOUT(closed, kPatience);
    f.finish();
    QCOMPARE(f.messages(), QStringList());
}

void UpdateCheckerTest::a_checker_that_goes_during_the_alert_still_opens_the_page()
{
    CheckerFixture f;
    f.alerts.answers = {AlertAnswer{0, false}};
    f.alerts.whileShown = [&f] { f.made.reset(); };
    QCOMPARE(f.check(), kUpdate);
    QCOMPARE(f.virtualPlatform.workspace.opened.size(), 1);
}

PARKLET_GUILESS_TEST(UpdateCheckerTest)
#include "UpdateCheckerTest.moc"
