// SPDX-License-Identifier: MIT
#include "updates/UpdateChecker.h"

#include "tests/support/LoopbackServer.h"
#include "tests/support/TestProgram.h"
#include "tests/support/VirtualPlatform.h"
#include "updates/BoundedFetch.h"

#include <QProcess>
#include <QSslConfiguration>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <csignal>
#include <optional>

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
    void the_status_of_the_answer_does_not_matter_data();
    void the_status_of_the_answer_does_not_matter();
    void an_answer_that_is_no_record_ends_in_silence_data();
    void an_answer_that_is_no_record_ends_in_silence();
    void a_server_that_is_not_there_ends_in_silence();
    void a_server_that_never_answers_is_given_up();
    void a_server_that_stops_within_the_answer_is_given_up();
    void a_redirect_to_where_nobody_answers_is_given_up();
    void the_time_without_data_is_five_seconds();
    void the_request_says_nothing_of_caches();
    void a_slow_answer_is_waited_for_while_it_goes_on();
    void an_answer_that_was_cut_short_ends_in_silence();
    void an_answer_of_a_megabyte_is_read_and_not_a_byte_more_data();
    void an_answer_of_a_megabyte_is_read_and_not_a_byte_more();
    void an_answer_without_end_is_given_up();
    void an_answer_that_unpacks_to_gigabytes_is_given_up();
    void a_check_takes_half_a_minute_at_most();
    void an_answer_that_trickles_without_end_is_given_up();
    void redirects_that_take_too_long_together_are_given_up();
    void header_lines_without_end_are_given_up_data();
    void header_lines_without_end_are_given_up();
    void an_answer_may_be_framed_in_other_ways_data();
    void an_answer_may_be_framed_in_other_ways();
    void an_answer_that_is_framed_badly_ends_in_silence_data();
    void an_answer_that_is_framed_badly_ends_in_silence();
    void a_redirect_is_followed_data();
    void a_redirect_is_followed();
    void twenty_redirects_are_followed_and_not_one_more_data();
    void twenty_redirects_are_followed_and_not_one_more();
    void a_redirect_that_leads_nowhere_ends_in_silence_data();
    void a_redirect_that_leads_nowhere_ends_in_silence();
    void a_trusted_certificate_is_accepted();
    void a_certificate_that_is_not_valid_ends_in_silence();
    void a_redirect_from_https_to_http_ends_in_silence();
    void two_quick_checks_may_show_two_alerts();
    void a_check_during_an_alert_shows_a_second_one();
    void the_alert_comes_in_a_later_turn_of_the_main_loop();
    void a_checker_that_is_gone_shows_nothing();
    void a_checker_that_goes_during_the_request_shows_nothing();
    void a_checker_that_goes_during_the_alert_still_opens_the_page();
};

namespace {

constexpr int kPatience = 20'000; // milliseconds
const QByteArray kRecord =
    R"({"version": "2.0", "url": "https://example.com/get", "notes": "Faster.\nBetter.", "other": 1})";

QByteArray recordOf(const QByteArray &version)
{
    return R"({"version": ")" + version + R"(", "url": "https://example.com/get"})";
}

struct Fixture {
    explicit Fixture(const QByteArray &body = kRecord)
    {
        server.onRequest = [body](QTcpSocket &socket, const QByteArray &) {
            LoopbackServer::reply(socket, "200 OK", body);
        };
    }

    UpdateChecker &checker()
    {
        if (!made)
            made.emplace(virtualPlatform.platform, server.url(), QStringLiteral("1.9"));
        return *made;
    }

    bool isUnderWay() const { return made && !made->findChildren<BoundedFetch *>().isEmpty(); }

    // Waits until every request is over, one way or the other, and lets the program act on it.
    void finish()
    {
        QVERIFY(QTest::qWaitFor([this] { return !isUnderWay(); }, kPatience));
        virtualPlatform.mainQueue.runPending();
    }

    // A check by the user, and the message texts of the alerts that it brought.
    QStringList check(bool silent = false)
    {
        checker().check(silent);
        finish();
        return messages();
    }

    QStringList messages() const
    {
        QStringList texts;
        for (const Alert &alert : alerts.shown)
            texts.append(alert.messageText);
        return texts;
    }

    VirtualPlatform virtualPlatform;
    VirtualAlerts &alerts = virtualPlatform.alerts;
    LoopbackServer server;
    std::optional<UpdateChecker> made;
};

const QStringList kUpdate = {QStringLiteral("Parklet update available")};
const QStringList kUpToDate = {QStringLiteral("Parklet is up to date")};

// A certificate for 127.0.0.1 that nobody has signed, made for this run.
struct OwnCertificate {
    OwnCertificate()
    {
        const QTemporaryDir folder;
        const QString keyPath = folder.filePath(QStringLiteral("key.pem"));
        const QString certificatePath = folder.filePath(QStringLiteral("certificate.pem"));
        QProcess openssl;
        openssl.start(QStringLiteral("openssl"),
                      {QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"),
                       QStringLiteral("rsa:2048"), QStringLiteral("-nodes"), QStringLiteral("-days"),
                       QStringLiteral("2"), QStringLiteral("-subj"), QStringLiteral("/CN=127.0.0.1"),
                       QStringLiteral("-addext"), QStringLiteral("subjectAltName=IP:127.0.0.1"),
                       QStringLiteral("-keyout"), keyPath, QStringLiteral("-out"), certificatePath});
        openssl.waitForFinished();
        QFile keyFile(keyPath);
        QFile certificateFile(certificatePath);
        if (!keyFile.open(QFile::ReadOnly) || !certificateFile.open(QFile::ReadOnly))
            return;
        key = QSslKey(&keyFile, QSsl::Rsa);
        certificate = QSslCertificate(&certificateFile);
    }

    QSslKey key;
    QSslCertificate certificate;
};

// Trusts one more certificate for as long as it lives.
class Trust {
public:
    explicit Trust(const QSslCertificate &certificate)
    {
        QSslConfiguration configuration = before;
        configuration.addCaCertificate(certificate);
        QSslConfiguration::setDefaultConfiguration(configuration);
    }
    ~Trust() { QSslConfiguration::setDefaultConfiguration(before); }

    Trust(const Trust &) = delete;
    Trust &operator=(const Trust &) = delete;

private:
    const QSslConfiguration before = QSslConfiguration::defaultConfiguration();
};

} // namespace

void UpdateCheckerTest::nothing_is_made_before_the_first_check()
{
    Fixture f;
    QVERIFY(f.checker().children().isEmpty());
    f.check();
    f.check();
    // Nor is anything left of one.
    QCOMPARE(f.server.requestLines.size(), 2);
    QTRY_VERIFY_WITH_TIMEOUT(f.checker().children().isEmpty(), kPatience);
}

void UpdateCheckerTest::an_address_that_is_not_valid_is_fatal()
{
    for (const QString &address : {QString(), QStringLiteral("https://a b/"), QStringLiteral("https://[::1")}) {
        const pid_t child = fork();
        if (child == 0) {
            // Neither the message, a stack trace nor a failed test is of interest.
            qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
            signal(SIGABRT, SIG_DFL);
            VirtualPlatform virtualPlatform;
            const UpdateChecker checker(virtualPlatform.platform, QUrl(address, QUrl::StrictMode),
                                        QStringLiteral("1.0"));
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
    QTest::addColumn<bool>("silent");
    QTest::newRow("the user") << false;
    QTest::newRow("the program") << true;
}

void UpdateCheckerTest::a_newer_version_is_told_whoever_asked()
{
    QFETCH(const bool, silent);
    Fixture f;
    QCOMPARE(f.check(silent), kUpdate);
    QCOMPARE(f.alerts.shown.first().informativeText,
             QStringLiteral("Version 2.0 is available.\n\nRelease notes: Faster.\nBetter."));
    QCOMPARE(f.alerts.shown.first().buttons, (QStringList{QStringLiteral("Download Update"), QStringLiteral("Later")}));
}

void UpdateCheckerTest::the_first_button_opens_the_download_page()
{
    Fixture f;
    f.alerts.answers = {AlertAnswer{0, false}};
    f.check();
    QCOMPARE(f.virtualPlatform.workspace.opened, QList<QUrl>{QUrl(QStringLiteral("https://example.com/get"))});
}

void UpdateCheckerTest::any_other_answer_opens_nothing()
{
    Fixture f;
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
    Fixture f(recordOf(version));
    f.alerts.answers = {AlertAnswer{0, false}};
    QCOMPARE(f.check(true), QStringList());
    QCOMPARE(f.check(false), kUpToDate);
    QVERIFY(f.virtualPlatform.workspace.opened.isEmpty());
}

void UpdateCheckerTest::every_check_asks_the_server()
{
    Fixture f;
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
    Fixture f;
    f.alerts.answers = {AlertAnswer{0, false}, AlertAnswer{1, false}};
    f.check(true);
    f.check();
    QCOMPARE(f.check(), kUpdate + kUpdate + kUpdate);
    QVERIFY(f.virtualPlatform.userDefaults.writes.isEmpty());
}

void UpdateCheckerTest::the_status_of_the_answer_does_not_matter_data()
{
    QTest::addColumn<QByteArray>("status");
    QTest::addColumn<QByteArray>("headers");
    for (const char *status : {"201 Created",
                               "203 Non-Authoritative",
                               "300 Multiple Choices",
                               "301 Moved Permanently",
                               "302 Found",
                               "303 See Other",
                               "305 Use Proxy",
                               "307 Temporary Redirect",
                               "308 Permanent Redirect",
                               "400 Bad Request",
                               "401 Unauthorized",
                               "402 Payment Required",
                               "403 Forbidden",
                               "404 Not Found",
                               "405 Not Allowed",
                               "407 Proxy Authentication Required",
                               "409 Conflict",
                               "410 Gone",
                               "418 Teapot",
                               "429 Too Many Requests",
                               "451 Unavailable",
                               "500 Internal Server Error",
                               "501 Not Implemented",
                               "502 Bad Gateway",
                               "503 Service Unavailable",
                               "504 Gateway Timeout",
                               "599 Unheard Of"})
        QTest::newRow(status) << QByteArray(status) << QByteArray();
    const QByteArray realm = "Basic realm=\"versions\"\r\n";
    QTest::newRow("401 and how to log in") << QByteArray("401 Unauthorized") << "WWW-Authenticate: " + realm;
    QTest::newRow("401 and an unknown way to log in")
        << QByteArray("401 Unauthorized") << QByteArray("WWW-Authenticate: Magic\r\n");
    QTest::newRow("407 and how to log in") << QByteArray("407 Log In") << "Proxy-Authenticate: " + realm;
}

void UpdateCheckerTest::the_status_of_the_answer_does_not_matter()
{
    QFETCH(const QByteArray, status);
    QFETCH(const QByteArray, headers);
    Fixture f;
    f.server.onRequest = [status, headers](QTcpSocket &socket, const QByteArray &) {
        LoopbackServer::reply(socket, status, kRecord, headers);
    };
    QCOMPARE(f.check(), kUpdate);
    QCOMPARE(f.server.requestLines.size(), 1);
}

void UpdateCheckerTest::an_answer_that_is_no_record_ends_in_silence_data()
{
    QTest::addColumn<QByteArray>("status");
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("empty") << QByteArray("200 OK") << QByteArray();
    QTest::newRow("no content") << QByteArray("204 No Content") << QByteArray();
    QTest::newRow("no content, by its status") << QByteArray("204 No Content") << kRecord;
    QTest::newRow("not modified") << QByteArray("304 Not Modified") << QByteArray();
    QTest::newRow("HTML") << QByteArray("200 OK") << QByteArray("<html><body>Welcome</body></html>");
    QTest::newRow("an error page") << QByteArray("500 Oops") << QByteArray("<html><body>Oops</body></html>");
    QTest::newRow("a version that is a number")
        << QByteArray("200 OK") << QByteArray(R"({"version": 2, "url": "https://example.com/"})");
    QTest::newRow("a url that is none") << QByteArray("200 OK")
                                        << QByteArray(R"({"version": "2", "url": "https://a b/"})");
}

void UpdateCheckerTest::an_answer_that_is_no_record_ends_in_silence()
{
    QFETCH(const QByteArray, status);
    QFETCH(const QByteArray, body);
    Fixture f;
    f.server.onRequest = [status, body](QTcpSocket &socket, const QByteArray &) {
        LoopbackServer::reply(socket, status, body);
    };
    QCOMPARE(f.check(), QStringList());
    QCOMPARE(f.server.requestLines.size(), 1);
}

void UpdateCheckerTest::a_server_that_is_not_there_ends_in_silence()
{
    Fixture f;
    f.checker();
    f.server.close();
    QCOMPARE(f.check(), QStringList());
}

void UpdateCheckerTest::a_server_that_never_answers_is_given_up()
{
    Fixture f;
    f.server.onRequest = nullptr;
    f.checker().timeout = 0.2;
    QCOMPARE(f.check(), QStringList());
    QCOMPARE(f.server.requestLines.size(), 1);
}

void UpdateCheckerTest::a_server_that_stops_within_the_answer_is_given_up()
{
    Fixture f;
    f.server.onRequest = [](QTcpSocket &socket, const QByteArray &) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n" + kRecord);
    };
    f.checker().timeout = 0.2;
    QCOMPARE(f.check(), QStringList());
}

void UpdateCheckerTest::a_redirect_to_where_nobody_answers_is_given_up()
{
    Fixture f;
    f.server.onRequest = [](QTcpSocket &socket, const QByteArray &line) {
        if (line.contains("version.json"))
            LoopbackServer::reply(socket, "302 Found", {}, "Location: /elsewhere\r\n");
    };
    f.checker().timeout = 0.2;
    QCOMPARE(f.check(), QStringList());
    QCOMPARE(f.server.requestLines.size(), 2);
}

void UpdateCheckerTest::the_time_without_data_is_five_seconds()
{
    Fixture f;
    QCOMPARE(f.checker().timeout, 5.0);
}

void UpdateCheckerTest::the_request_says_nothing_of_caches()
{
    Fixture f;
    f.check();
    QVERIFY(f.server.lastHeader.startsWith("Host: 127.0.0.1:" + QByteArray::number(f.server.serverPort()) + "\r\n"));
    QVERIFY(!f.server.lastHeader.toLower().contains("cache"));
    QVERIFY(!f.server.lastHeader.toLower().contains("pragma"));
}

void UpdateCheckerTest::a_slow_answer_is_waited_for_while_it_goes_on()
{
    Fixture f;
    QTimer drip;
    QByteArray rest = "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(kRecord.size()) + "\r\n\r\n" + kRecord;
    f.server.onRequest = [&](QTcpSocket &socket, const QByteArray &) {
        QObject::connect(&drip, &QTimer::timeout, &socket, [&] {
            socket.write(rest.left(5));
            rest = rest.mid(5);
            if (rest.isEmpty())
                drip.stop();
        });
        drip.start(75);
    };
    // The answer takes longer than that in all.
    f.checker().timeout = 1.0;
    QCOMPARE(f.check(), kUpdate);
}

void UpdateCheckerTest::an_answer_that_was_cut_short_ends_in_silence()
{
    Fixture f;
    f.server.onRequest = [](QTcpSocket &socket, const QByteArray &) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n" + kRecord);
        socket.disconnectFromHost();
    };
    QCOMPARE(f.check(), QStringList());
}

void UpdateCheckerTest::an_answer_of_a_megabyte_is_read_and_not_a_byte_more_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<QStringList>("shown");
    QTest::newRow("a megabyte") << 1'048'576 << kUpdate;
    QTest::newRow("a byte more") << 1'048'577 << QStringList();
}

void UpdateCheckerTest::an_answer_of_a_megabyte_is_read_and_not_a_byte_more()
{
    QFETCH(const int, size);
    Fixture f(kRecord.leftJustified(size, ' '));
    QTEST(f.check(), "shown");
}

void UpdateCheckerTest::an_answer_without_end_is_given_up()
{
    Fixture f;
    qint64 sent = 0;
    bool closed = false;
    const QByteArray piece(65'536, ' ');
    f.server.onRequest = [&](QTcpSocket &socket, const QByteArray &) {
        QObject::connect(&socket, &QTcpSocket::disconnected, &socket, [&closed] { closed = true; });
        QObject::connect(&socket, &QTcpSocket::bytesWritten, &socket, [&] {
            sent += piece.size();
            socket.write(piece);
        });
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: 9000000000\r\n\r\n" + kRecord);
    };
    QCOMPARE(f.check(), QStringList());
    QTRY_VERIFY_WITH_TIMEOUT(closed, kPatience);
    QVERIFY2(sent < 32'000'000, qPrintable(QString::number(sent)));
}

void UpdateCheckerTest::an_answer_that_unpacks_to_gigabytes_is_given_up()
{
    // qCompress puts the size in front of the zlib stream.
    const QByteArray packed = qCompress(kRecord.leftJustified(20'000'000, ' ')).mid(4);
    QVERIFY(packed.size() < 100'000);
    Fixture f;
    f.server.onRequest = [packed](QTcpSocket &socket, const QByteArray &) {
        LoopbackServer::reply(socket, "200 OK", packed, "Content-Encoding: deflate\r\n");
    };
    QCOMPARE(f.check(), QStringList());
}

void UpdateCheckerTest::a_check_takes_half_a_minute_at_most()
{
    Fixture f;
    QCOMPARE(f.checker().longestCheck, 30.0);
}

void UpdateCheckerTest::an_answer_that_trickles_without_end_is_given_up()
{
    Fixture f;
    QTimer drip;
    f.server.onRequest = [&](QTcpSocket &socket, const QByteArray &) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\n");
        QObject::connect(&drip, &QTimer::timeout, &socket, [&socket] { socket.write(" "); });
        drip.start(20);
    };
    f.checker().longestCheck = 0.5;
    QCOMPARE(f.check(), QStringList());
}

void UpdateCheckerTest::redirects_that_take_too_long_together_are_given_up()
{
    Fixture f;
    f.server.onRequest = [&](QTcpSocket &socket, const QByteArray &) {
        QTimer::singleShot(200, &socket, [&f, &socket] {
            LoopbackServer::reply(socket, "302 Found", {}, "Location: " + f.server.url().toEncoded() + "\r\n");
        });
    };
    f.checker().longestCheck = 0.5;
    QCOMPARE(f.check(), QStringList());
    QVERIFY2(f.server.requestLines.size() <= 3, qPrintable(QString::number(f.server.requestLines.size())));
}

void UpdateCheckerTest::header_lines_without_end_are_given_up_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::newRow("lines") << QByteArray("X-Line: and another one\r\n").repeated(2'000);
    QTest::newRow("one line") << QByteArray(50'000, 'x');
    QTest::newRow("announcements") << QByteArray("HTTP/1.1 100 Continue\r\n\r\n").repeated(2'000);
}

void UpdateCheckerTest::header_lines_without_end_are_given_up()
{
    QFETCH(const QByteArray, lines);
    Fixture f;
    qint64 sent = 0;
    bool closed = false;
    f.server.onRequest = [&](QTcpSocket &socket, const QByteArray &) {
        QObject::connect(&socket, &QTcpSocket::disconnected, &socket, [&closed] { closed = true; });
        QObject::connect(&socket, &QTcpSocket::bytesWritten, &socket, [&](qint64 count) {
            sent += count;
            if (socket.bytesToWrite() == 0)
                socket.write(lines);
        });
        socket.write((lines.startsWith("HTTP") ? QByteArray() : "HTTP/1.1 200 OK\r\n") + lines);
    };
    QCOMPARE(f.check(), QStringList());
    // Nothing of it goes on, and the next check is as the first one.
    QTRY_VERIFY_WITH_TIMEOUT(closed, kPatience);
    QVERIFY2(sent < 16'000'000, qPrintable(QString::number(sent)));
    f.server.onRequest = [](QTcpSocket &socket, const QByteArray &) {
        LoopbackServer::reply(socket, "200 OK", kRecord);
    };
    QCOMPARE(f.check(), kUpdate);
}

void UpdateCheckerTest::an_answer_may_be_framed_in_other_ways_data()
{
    QTest::addColumn<QByteArray>("answer");
    const QByteArray half = kRecord.left(30);
    const QByteArray rest = kRecord.mid(30);
    QTest::newRow("by the end of the connection") << "HTTP/1.0 200 OK\r\n\r\n" + kRecord;
    QTest::newRow("in chunks") << "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n1E;a=b\r\n" + half + "\r\n" +
                                      QByteArray::number(rest.size(), 16) + "\r\n" + rest + "\r\n0\r\n\r\n";
    QTest::newRow("after an announcement")
        << "HTTP/1.1 103 Early Hints\r\nX: y\r\n\r\nHTTP/1.1 200 OK\r\nContent-Length: " +
               QByteArray::number(kRecord.size()) + "\r\n\r\n" + kRecord;
    QTest::newRow("with more than it says")
        << "HTTP/1.1 200 OK\r\ncontent-length:" + QByteArray::number(kRecord.size()) + "\r\n\r\n" + kRecord + "more";
}

void UpdateCheckerTest::an_answer_may_be_framed_in_other_ways()
{
    QFETCH(const QByteArray, answer);
    Fixture f;
    f.server.onRequest = [&answer](QTcpSocket &socket, const QByteArray &) {
        socket.write(answer);
        socket.disconnectFromHost();
    };
    QCOMPARE(f.check(), kUpdate);
}

void UpdateCheckerTest::an_answer_that_is_framed_badly_ends_in_silence_data()
{
    QTest::addColumn<QByteArray>("answer");
    const QByteArray size = QByteArray::number(kRecord.size(), 16);
    const QByteArray chunked = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";
    QTest::newRow("no header") << kRecord;
    QTest::newRow("another protocol") << "ICY 200 OK\r\n\r\n" + kRecord;
    QTest::newRow("no status") << "HTTP/1.1 OK\r\n\r\n" + kRecord;
    QTest::newRow("no end of the header") << "HTTP/1.1 200 OK\r\nX: y\r\n" + kRecord;
    QTest::newRow("no last chunk") << chunked + size + "\r\n" + kRecord + "\r\n";
    QTest::newRow("no size") << chunked + "size\r\n" + kRecord + "\r\n0\r\n\r\n";
    QTest::newRow("a size below zero") << chunked + "-1\r\n" + kRecord + "\r\n0\r\n\r\n";
    QTest::newRow("no end of a size") << chunked + QByteArray(2'000, '1');
    QTest::newRow("chunks without end") << chunked + ("8000\r\n" + QByteArray(0x8000, ' ') + "\r\n").repeated(40);
}

void UpdateCheckerTest::an_answer_that_is_framed_badly_ends_in_silence()
{
    QFETCH(const QByteArray, answer);
    Fixture f;
    f.server.onRequest = [&answer](QTcpSocket &socket, const QByteArray &) {
        socket.write(answer);
        socket.disconnectFromHost();
    };
    QCOMPARE(f.check(), QStringList());
}

void UpdateCheckerTest::a_redirect_is_followed_data()
{
    QTest::addColumn<QByteArray>("status");
    for (const char *status :
         {"301 Moved Permanently", "302 Found", "303 See Other", "307 Temporary Redirect", "308 Permanent Redirect"})
        QTest::newRow(status) << QByteArray(status);
}

void UpdateCheckerTest::a_redirect_is_followed()
{
    QFETCH(const QByteArray, status);
    Fixture f;
    f.server.onRequest = [status](QTcpSocket &socket, const QByteArray &line) {
        if (line.contains("version.json"))
            LoopbackServer::reply(socket, status, "<html></html>", "Location: /elsewhere\r\n");
        else
            LoopbackServer::reply(socket, "200 OK", kRecord);
    };
    QCOMPARE(f.check(), kUpdate);
    QCOMPARE(f.server.requestLines.last(), QByteArray("GET /elsewhere HTTP/1.1"));
}

void UpdateCheckerTest::twenty_redirects_are_followed_and_not_one_more_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QStringList>("shown");
    QTest::newRow("20") << 20 << kUpdate;
    QTest::newRow("21") << 21 << QStringList();
}

void UpdateCheckerTest::twenty_redirects_are_followed_and_not_one_more()
{
    QFETCH(const int, count);
    Fixture f;
    f.server.onRequest = [&f, count](QTcpSocket &socket, const QByteArray &) {
        if (f.server.requestLines.size() <= count)
            LoopbackServer::reply(socket, "302 Found", {}, "Location: next.json\r\n");
        else
            LoopbackServer::reply(socket, "200 OK", kRecord);
    };
    QTEST(f.check(), "shown");
    QCOMPARE(f.server.requestLines.size(), 21);
    QCOMPARE(f.server.requestLines.last(), QByteArray("GET /next.json HTTP/1.1"));
}

void UpdateCheckerTest::a_redirect_that_leads_nowhere_ends_in_silence_data()
{
    QTest::addColumn<QByteArray>("location");
    QTest::newRow("in a circle") << QByteArray("/version.json");
    QTest::newRow("to a closed port") << QByteArray("http://127.0.0.1:1/");
    QTest::newRow("to a file") << QByteArray("file:///etc/hostname");
    QTest::newRow("to another protocol") << QByteArray("gopher://127.0.0.1/");
    QTest::newRow("to no address") << QByteArray("http://[::1");
}

void UpdateCheckerTest::a_redirect_that_leads_nowhere_ends_in_silence()
{
    QFETCH(const QByteArray, location);
    Fixture f;
    f.server.onRequest = [location](QTcpSocket &socket, const QByteArray &) {
        LoopbackServer::reply(socket, "302 Found", kRecord, "Location: " + location + "\r\n");
    };
    QCOMPARE(f.check(), QStringList());
}

void UpdateCheckerTest::a_trusted_certificate_is_accepted()
{
    const OwnCertificate own;
    QVERIFY(!own.certificate.isNull());
    const Trust trust(own.certificate);
    Fixture f;
    f.server.setCertificate(own.certificate, own.key);
    QCOMPARE(f.check(), kUpdate);
}

void UpdateCheckerTest::a_certificate_that_is_not_valid_ends_in_silence()
{
    const OwnCertificate own;
    QVERIFY(!own.certificate.isNull());
    Fixture f;
    f.server.setCertificate(own.certificate, own.key);
    QCOMPARE(f.check(), QStringList());
    QVERIFY(f.server.requestLines.isEmpty());
}

void UpdateCheckerTest::a_redirect_from_https_to_http_ends_in_silence()
{
    const OwnCertificate own;
    QVERIFY(!own.certificate.isNull());
    const Trust trust(own.certificate);
    LoopbackServer plain;
    plain.onRequest = [](QTcpSocket &socket, const QByteArray &) { LoopbackServer::reply(socket, "200 OK", kRecord); };
    Fixture f;
    f.server.setCertificate(own.certificate, own.key);
    f.server.onRequest = [&plain](QTcpSocket &socket, const QByteArray &) {
        LoopbackServer::reply(socket, "302 Found", {}, "Location: " + plain.url().toEncoded() + "\r\n");
    };
    QCOMPARE(f.check(), QStringList());
    QCOMPARE(f.server.requestLines.size(), 1);
    QVERIFY(plain.requestLines.isEmpty());

    // The other way is safer, and followed.
    Fixture g;
    g.server.onRequest = [&f](QTcpSocket &socket, const QByteArray &) {
        LoopbackServer::reply(socket, "302 Found", {}, "Location: " + f.server.url().toEncoded() + "\r\n");
    };
    f.server.onRequest = plain.onRequest;
    QCOMPARE(g.check(), kUpdate);
}

void UpdateCheckerTest::two_quick_checks_may_show_two_alerts()
{
    Fixture f(recordOf("1.9"));
    f.checker().check(false);
    f.checker().check(true);
    f.checker().check(false);
    f.finish();
    QCOMPARE(f.server.requestLines.size(), 3);
    QCOMPARE(f.messages(), kUpToDate + kUpToDate);
}

void UpdateCheckerTest::a_check_during_an_alert_shows_a_second_one()
{
    Fixture f;
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
    Fixture f;
    f.checker().check(false);
    QTRY_COMPARE_WITH_TIMEOUT(f.virtualPlatform.mainQueue.pendingCount(), 1, kPatience);
    QCOMPARE(f.messages(), QStringList());
    f.virtualPlatform.mainQueue.runPending();
    QCOMPARE(f.messages(), kUpdate);
}

void UpdateCheckerTest::a_checker_that_is_gone_shows_nothing()
{
    Fixture f;
    f.checker().check(false);
    QTRY_COMPARE_WITH_TIMEOUT(f.virtualPlatform.mainQueue.pendingCount(), 1, kPatience);
    f.made.reset();
    f.finish();
    QCOMPARE(f.messages(), QStringList());
}

void UpdateCheckerTest::a_checker_that_goes_during_the_request_shows_nothing()
{
    Fixture f;
    bool closed = false;
    f.server.onRequest = [&](QTcpSocket &socket, const QByteArray &) {
        QObject::connect(&socket, &QTcpSocket::disconnected, &socket, [&closed] { closed = true; });
    };
    f.checker().check(false);
    QTRY_COMPARE_WITH_TIMEOUT(f.server.requestLines.size(), 1, kPatience);
    f.made.reset();
    QTRY_VERIFY_WITH_TIMEOUT(closed, kPatience);
    f.finish();
    QCOMPARE(f.messages(), QStringList());
}

void UpdateCheckerTest::a_checker_that_goes_during_the_alert_still_opens_the_page()
{
    Fixture f;
    f.alerts.answers = {AlertAnswer{0, false}};
    f.alerts.whileShown = [&f] { f.made.reset(); };
    QCOMPARE(f.check(), kUpdate);
    QCOMPARE(f.virtualPlatform.workspace.opened.size(), 1);
}

PARKLET_GUILESS_TEST(UpdateCheckerTest)
#include "UpdateCheckerTest.moc"
