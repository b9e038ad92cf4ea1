// SPDX-License-Identifier: MIT
#include "tests/support/TestProgram.h"
#include "tests/updates/CheckerFixture.h"

#include <QProcess>
#include <QSslConfiguration>
#include <QTemporaryDir>
#include <QTimer>

class UpdateRequestTest : public QObject {
    Q_OBJECT

private slots:
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
};

namespace {

// A self-signed certificate for 127.0.0.1, made for this run.
struct OwnCertificate {
    OwnCertificate()
    {
        const QTemporaryDir folder;
        const QString keyPath = folder.filePath(u"key.pem"_s);
        const QString certificatePath = folder.filePath(u"certificate.pem"_s);
        QProcess openssl;
        openssl.start(u"openssl"_s, {u"req"_s, u"-x509"_s, u"-newkey"_s, u"rsa:2048"_s, u"-nodes"_s, u"-days"_s, u"2"_s,
                                     u"-subj"_s, u"/CN=127.0.0.1"_s, u"-addext"_s, u"subjectAltName=IP:127.0.0.1"_s,
                                     u"-keyout"_s, keyPath, u"-out"_s, certificatePath});
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

// Trusts a certificate while it exists.
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

void UpdateRequestTest::the_status_of_the_answer_does_not_matter_data()
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

void UpdateRequestTest::the_status_of_the_answer_does_not_matter()
{
    QFETCH(const QByteArray, status);
    QFETCH(const QByteArray, headers);
    CheckerFixture f;
    f.server.onRequest = [status, headers](QTcpSocket &socket, const QByteArray &) {
        LoopbackServer::reply(socket, status, kRecord, headers);
    };
    QCOMPARE(f.check(), kUpdate);
    QCOMPARE(f.server.requestLines.size(), 1);
}

void UpdateRequestTest::an_answer_that_is_no_record_ends_in_silence_data()
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

void UpdateRequestTest::an_answer_that_is_no_record_ends_in_silence()
{
    QFETCH(const QByteArray, status);
    QFETCH(const QByteArray, body);
    CheckerFixture f;
    f.server.onRequest = [status, body](QTcpSocket &socket, const QByteArray &) {
        LoopbackServer::reply(socket, status, body);
    };
    QCOMPARE(f.check(), QStringList());
    QCOMPARE(f.server.requestLines.size(), 1);
}

void UpdateRequestTest::a_server_that_is_not_there_ends_in_silence()
{
    CheckerFixture f;
    f.checker();
    f.server.close();
    QCOMPARE(f.check(), QStringList());
}

void UpdateRequestTest::a_server_that_never_answers_is_given_up()
{
    CheckerFixture f;
    f.server.onRequest = nullptr;
    f.checker().timeout = 0.2;
    QCOMPARE(f.check(), QStringList());
    QCOMPARE(f.server.requestLines.size(), 1);
}

void UpdateRequestTest::a_server_that_stops_within_the_answer_is_given_up()
{
    CheckerFixture f;
    f.server.onRequest = [](QTcpSocket &socket, const QByteArray &) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n" + kRecord);
    };
    f.checker().timeout = 0.2;
    QCOMPARE(f.check(), QStringList());
}

void UpdateRequestTest::a_redirect_to_where_nobody_answers_is_given_up()
{
    CheckerFixture f;
    f.server.onRequest = [](QTcpSocket &socket, const QByteArray &line) {
        if (line.contains("version.json"))
            LoopbackServer::reply(socket, "302 Found", {}, "Location: /elsewhere\r\n");
    };
    f.checker().timeout = 0.2;
    QCOMPARE(f.check(), QStringList());
    QCOMPARE(f.server.requestLines.size(), 2);
}

void UpdateRequestTest::the_time_without_data_is_five_seconds()
{
    CheckerFixture f;
    QCOMPARE(f.checker().timeout, 5.0);
}

void UpdateRequestTest::the_request_says_nothing_of_caches()
{
    CheckerFixture f;
    f.check();
    QVERIFY(f.server.lastHeader.startsWith("Host: 127.0.0.1:" + QByteArray::number(f.server.serverPort()) + "\r\n"));
    QVERIFY(!f.server.lastHeader.toLower().contains("cache"));
    QVERIFY(!f.server.lastHeader.toLower().contains("pragma"));
}

void UpdateRequestTest::a_slow_answer_is_waited_for_while_it_goes_on()
{
    CheckerFixture f;
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
    // The whole answer takes longer than this.
    f.checker().timeout = 1.0;
    QCOMPARE(f.check(), kUpdate);
}

void UpdateRequestTest::an_answer_that_was_cut_short_ends_in_silence()
{
    CheckerFixture f;
    f.server.onRequest = [](QTcpSocket &socket, const QByteArray &) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n" + kRecord);
        socket.disconnectFromHost();
    };
    QCOMPARE(f.check(), QStringList());
}

void UpdateRequestTest::an_answer_of_a_megabyte_is_read_and_not_a_byte_more_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<QStringList>("shown");
    QTest::newRow("a megabyte") << 1'048'576 << kUpdate;
    QTest::newRow("a byte more") << 1'048'577 << QStringList();
}

void UpdateRequestTest::an_answer_of_a_megabyte_is_read_and_not_a_byte_more()
{
    QFETCH(const int, size);
    CheckerFixture f(kRecord.leftJustified(size, ' '));
    QTEST(f.check(), "shown");
}

void UpdateRequestTest::an_answer_without_end_is_given_up()
{
    CheckerFixture f;
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

void UpdateRequestTest::an_answer_that_unpacks_to_gigabytes_is_given_up()
{
    // qCompress writes the size before the zlib stream.
    const QByteArray packed = qCompress(kRecord.leftJustified(20'000'000, ' ')).mid(4);
    QVERIFY(packed.size() < 100'000);
    CheckerFixture f;
    f.server.onRequest = [packed](QTcpSocket &socket, const QByteArray &) {
        LoopbackServer::reply(socket, "200 OK", packed, "Content-Encoding: deflate\r\n");
    };
    QCOMPARE(f.check(), QStringList());
}

void UpdateRequestTest::a_check_takes_half_a_minute_at_most()
{
    CheckerFixture f;
    QCOMPARE(f.checker().longestCheck, 30.0);
}

void UpdateRequestTest::an_answer_that_trickles_without_end_is_given_up()
{
    CheckerFixture f;
    QTimer drip;
    f.server.onRequest = [&](QTcpSocket &socket, const QByteArray &) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\n");
        QObject::connect(&drip, &QTimer::timeout, &socket, [&socket] { socket.write(" "); });
        drip.start(20);
    };
    f.checker().longestCheck = 0.5;
    QCOMPARE(f.check(), QStringList());
}

void UpdateRequestTest::redirects_that_take_too_long_together_are_given_up()
{
    CheckerFixture f;
    f.server.onRequest = [&](QTcpSocket &socket, const QByteArray &) {
        QTimer::singleShot(200, &socket, [&f, &socket] {
            LoopbackServer::reply(socket, "302 Found", {}, "Location: " + f.server.url().toEncoded() + "\r\n");
        });
    };
    f.checker().longestCheck = 0.5;
    QCOMPARE(f.check(), QStringList());
    QVERIFY2(f.server.requestLines.size() <= 3, qPrintable(QString::number(f.server.requestLines.size())));
}

void UpdateRequestTest::header_lines_without_end_are_given_up_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::newRow("lines") << QByteArray("X-Line: and another one\r\n").repeated(2'000);
    QTest::newRow("one line") << QByteArray(50'000, 'x');
    QTest::newRow("announcements") << QByteArray("HTTP/1.1 100 Continue\r\n\r\n").repeated(2'000);
}

void UpdateRequestTest::header_lines_without_end_are_given_up()
{
    QFETCH(const QByteArray, lines);
    CheckerFixture f;
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
    // The connection is closed, and the next check works.
    QTRY_VERIFY_WITH_TIMEOUT(closed, kPatience);
    QVERIFY2(sent < 16'000'000, qPrintable(QString::number(sent)));
    f.server.onRequest = [](QTcpSocket &socket, const QByteArray &) {
        LoopbackServer::reply(socket, "200 OK", kRecord);
    };
    QCOMPARE(f.check(), kUpdate);
}

void UpdateRequestTest::an_answer_may_be_framed_in_other_ways_data()
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

void UpdateRequestTest::an_answer_may_be_framed_in_other_ways()
{
    QFETCH(const QByteArray, answer);
    CheckerFixture f;
    f.server.onRequest = [&answer](QTcpSocket &socket, const QByteArray &) {
        socket.write(answer);
        socket.disconnectFromHost();
    };
    QCOMPARE(f.check(), kUpdate);
}

void UpdateRequestTest::an_answer_that_is_framed_badly_ends_in_silence_data()
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

void UpdateRequestTest::an_answer_that_is_framed_badly_ends_in_silence()
{
    QFETCH(const QByteArray, answer);
    CheckerFixture f;
    f.server.onRequest = [&answer](QTcpSocket &socket, const QByteArray &) {
        socket.write(answer);
        socket.disconnectFromHost();
    };
    QCOMPARE(f.check(), QStringList());
}

void UpdateRequestTest::a_redirect_is_followed_data()
{
    QTest::addColumn<QByteArray>("status");
    for (const char *status :
         {"301 Moved Permanently", "302 Found", "303 See Other", "307 Temporary Redirect", "308 Permanent Redirect"})
        QTest::newRow(status) << QByteArray(status);
}

void UpdateRequestTest::a_redirect_is_followed()
{
    QFETCH(const QByteArray, status);
    CheckerFixture f;
    f.server.onRequest = [status](QTcpSocket &socket, const QByteArray &line) {
        if (line.contains("version.json"))
            LoopbackServer::reply(socket, status, "<html></html>", "Location: /elsewhere\r\n");
        else
            LoopbackServer::reply(socket, "200 OK", kRecord);
    };
    QCOMPARE(f.check(), kUpdate);
    QCOMPARE(f.server.requestLines.last(), QByteArray("GET /elsewhere HTTP/1.1"));
}

void UpdateRequestTest::twenty_redirects_are_followed_and_not_one_more_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QStringList>("shown");
    QTest::newRow("20") << 20 << kUpdate;
    QTest::newRow("21") << 21 << QStringList();
}

void UpdateRequestTest::twenty_redirects_are_followed_and_not_one_more()
{
    QFETCH(const int, count);
    CheckerFixture f;
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

void UpdateRequestTest::a_redirect_that_leads_nowhere_ends_in_silence_data()
{
    QTest::addColumn<QByteArray>("location");
    QTest::newRow("in a circle") << QByteArray("/version.json");
    QTest::newRow("to a closed port") << QByteArray("http://127.0.0.1:1/");
    QTest::newRow("to a file") << QByteArray("file:///etc/hostname");
    QTest::newRow("to another protocol") << QByteArray("gopher://127.0.0.1/");
    QTest::newRow("to no address") << QByteArray("http://[::1");
}

void UpdateRequestTest::a_redirect_that_leads_nowhere_ends_in_silence()
{
    QFETCH(const QByteArray, location);
    CheckerFixture f;
    f.server.onRequest = [location](QTcpSocket &socket, const QByteArray &) {
        LoopbackServer::reply(socket, "302 Found", kRecord, "Location: " + location + "\r\n");
    };
    QCOMPARE(f.check(), QStringList());
}

void UpdateRequestTest::a_trusted_certificate_is_accepted()
{
    const OwnCertificate own;
    QVERIFY(!own.certificate.isNull());
    const Trust trust(own.certificate);
    CheckerFixture f;
    f.server.setCertificate(own.certificate, own.key);
    QCOMPARE(f.check(), kUpdate);
}

void UpdateRequestTest::a_certificate_that_is_not_valid_ends_in_silence()
{
    const OwnCertificate own;
    QVERIFY(!own.certificate.isNull());
    CheckerFixture f;
    f.server.setCertificate(own.certificate, own.key);
    QCOMPARE(f.check(), QStringList());
    QVERIFY(f.server.requestLines.isEmpty());
}

void UpdateRequestTest::a_redirect_from_https_to_http_ends_in_silence()
{
    const OwnCertificate own;
    QVERIFY(!own.certificate.isNull());
    const Trust trust(own.certificate);
    LoopbackServer plain;
    plain.onRequest = [](QTcpSocket &socket, const QByteArray &) { LoopbackServer::reply(socket, "200 OK", kRecord); };
    CheckerFixture f;
    f.server.setCertificate(own.certificate, own.key);
    f.server.onRequest = [&plain](QTcpSocket &socket, const QByteArray &) {
        LoopbackServer::reply(socket, "302 Found", {}, "Location: " + plain.url().toEncoded() + "\r\n");
    };
    QCOMPARE(f.check(), QStringList());
    QCOMPARE(f.server.requestLines.size(), 1);
    QVERIFY(plain.requestLines.isEmpty());

    // The other direction is safer, and is followed.
    CheckerFixture g;
    g.server.onRequest = [&f](QTcpSocket &socket, const QByteArray &) {
        LoopbackServer::reply(socket, "302 Found", {}, "Location: " + f.server.url().toEncoded() + "\r\n");
    };
    f.server.onRequest = plain.onRequest;
    QCOMPARE(g.check(), kUpdate);
}

PARKLET_GUILESS_TEST(UpdateRequestTest)
#include "UpdateRequestTest.moc"
