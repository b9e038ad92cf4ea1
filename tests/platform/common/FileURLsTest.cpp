// SPDX-License-Identifier: MIT
#include "platform/FileURLs.h"
#include "tests/support/TestProgram.h"

#include <QTest>

#include <ctime>

using namespace Qt::StringLiterals;

class FileURLsTest : public QObject {
    Q_OBJECT

private slots:
    void a_path_of_any_bytes_survives_its_url();
    void the_url_of_a_path_is_the_one_that_qt_makes();
    void every_spelling_of_a_path_is_the_same_url_data();
    void every_spelling_of_a_path_is_the_same_url();
    void the_name_of_a_file_is_its_last_component_data();
    void the_name_of_a_file_is_its_last_component();
    void a_link_is_the_file_on_its_first_line_data();
    void a_link_is_the_file_on_its_first_line();
    void what_no_file_system_can_hold_is_no_file_data();
    void what_no_file_system_can_hold_is_no_file();
    void a_list_is_read_up_to_its_bounds();
    void one_that_is_no_file_counts_within_the_bounds();
    void a_list_of_a_hundred_megabytes_takes_no_time_data();
    void a_list_of_a_hundred_megabytes_takes_no_time();
};

namespace {

constexpr qsizetype kHundredMegabytes = 100'000'000;
// A few times the needed time, for slow machines. Without the bounds it takes a hundred times as long.
constexpr double kNoTime = 0.25; // seconds

// The processor time of this thread in seconds, which does not depend on other threads.
double processorTime()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) + 1e-9 * double(time.tv_nsec);
}

QByteArray repeated(const QByteArray &line, qsizetype size)
{
    return line.repeated(size / line.size() + 1);
}

} // namespace

void FileURLsTest::a_path_of_any_bytes_survives_its_url()
{
    for (int byte = 1; byte < 256; ++byte) {
        const QByteArray path = QByteArray("/home/") + static_cast<char>(byte) + QByteArray("x%41.png");
        const QUrl url = fileURL(path);
        QVERIFY(url.isLocalFile());
        QCOMPARE(fileSystemPath(url), path);
        QCOMPARE(fileURLs(url.toEncoded()), QList<QUrl>{url});
    }
}

void FileURLsTest::the_url_of_a_path_is_the_one_that_qt_makes()
{
    for (char16_t unit = 1; unit < 0x3000; ++unit) {
        const QString path = u"/home/a"_s + QChar(unit) + u"b %41.png"_s;
        QCOMPARE(fileURL(path.toUtf8()), QUrl::fromLocalFile(path));
    }
}

void FileURLsTest::every_spelling_of_a_path_is_the_same_url_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("as few escapes as may be") << QByteArray("file:///home/A%20;(1)[2]'!~.png");
    QTest::newRow("as GLib writes it") << QByteArray("file:///home/A%20%3B(1)%5B2%5D'!~.png");
    QTest::newRow("as many escapes as may be") << QByteArray("file:///home/%41%20%3b%281%29%5b2%5d%27%21%7e.png");
    QTest::newRow("with this machine's name") << QByteArray("file://localhost/home/A%20;(1)[2]'!~.png");
    QTest::newRow("with one slash") << QByteArray("file:/home/A%20;(1)[2]'!~.png");
}

void FileURLsTest::every_spelling_of_a_path_is_the_same_url()
{
    QFETCH(const QByteArray, line);
    QCOMPARE(fileURLs(line), QList<QUrl>{fileURL("/home/A ;(1)[2]'!~.png")});
}

void FileURLsTest::the_name_of_a_file_is_its_last_component_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << QByteArray("/home/a.txt") << u"a.txt"_s;
    QTest::newRow("percent") << QByteArray("/home/100% %41.txt") << u"100% %41.txt"_s;
    QTest::newRow("hash") << QByteArray("/home/#1.txt") << u"#1.txt"_s;
    QTest::newRow("question mark") << QByteArray("/home/?x=1.txt") << u"?x=1.txt"_s;
    QTest::newRow("no text") << QByteArray("/home/\xff\xfe.txt") << u"\ufffd\ufffd.txt"_s;
    QTest::newRow("root") << QByteArray("/") << u"/"_s;
    QTest::newRow("folder") << QByteArray("/home/a#b/") << u"a#b"_s;
}

void FileURLsTest::the_name_of_a_file_is_its_last_component()
{
    QFETCH(const QByteArray, path);
    QTEST(lastPathComponent(fileURL(path)), "name");
}

void FileURLsTest::a_link_is_the_file_on_its_first_line_data()
{
    const QList<QUrl> file = {fileURL("/tmp/a b.pdf")};
    QTest::addColumn<QString>("link");
    QTest::addColumn<QList<QUrl>>("urls");
    QTest::newRow("with a title") << u"file:///tmp/a%20b.pdf\nThe file"_s << file;
    QTest::newRow("without a title") << u"file:///tmp/a%20b.pdf"_s << file;
    QTest::newRow("with its byte order") << u"\ufefffile:///tmp/a%20b.pdf\n"_s << file;
    QTest::newRow("with the ends of lines of other systems") << u"file:///tmp/a%20b.pdf\r\nx"_s << file;
    QTest::newRow("with a title in lines") << u"file:///tmp/a%20b.pdf\nThe\nfile:///x"_s << file;
    QTest::newRow("to a page") << u"https://example.org/\nfile:///tmp/a%20b.pdf"_s << QList<QUrl>{};
    QTest::newRow("to another machine") << u"file://elsewhere/tmp/a\nA"_s << QList<QUrl>{};
    QTest::newRow("empty") << QString() << QList<QUrl>{};
}

void FileURLsTest::a_link_is_the_file_on_its_first_line()
{
    QFETCH(const QString, link);
    const QByteArray bytes(reinterpret_cast<const char *>(link.utf16()), link.size() * qsizetype(sizeof(char16_t)));
    QTEST(linkedFileURLs(bytes), "urls");
    // An incomplete character at the end does no harm.
    QTEST(linkedFileURLs(bytes + '\n'), "urls");
}

void FileURLsTest::what_no_file_system_can_hold_is_no_file_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<bool>("isFile");
    QTest::newRow("the longest name") << "/home/" + QByteArray(255, 'a') << true;
    QTest::newRow("a longer name") << "/home/" + QByteArray(256, 'a') << false;
    QTest::newRow("a longer name of a folder") << "/home/" + QByteArray(256, 'a') + "/b" << false;
    QTest::newRow("the longest name in three bytes each")
        << "/home/" + QByteArray("\xe2\x82\xac").repeated(255) << true;
    QTest::newRow("a longer one") << "/home/" + QByteArray("\xe2\x82\xac").repeated(256) << false;
    QTest::newRow("the longest path") << QByteArray("/a").repeated(2047) + "b" << true;
    QTest::newRow("a longer path") << QByteArray("/a").repeated(2048) << false;
    QTest::newRow("a byte that ends names") << QByteArray("/home/a\0b", 9) << false;
    QTest::newRow("a name of megabytes") << "/home/" + QByteArray(50'000'000, 'a') << false;
}

void FileURLsTest::what_no_file_system_can_hold_is_no_file()
{
    QFETCH(const QByteArray, path);
    QFETCH(const bool, isFile);
    const QByteArray encoded = "file://" + path.toPercentEncoding("/");
    for (const QByteArray &address : {encoded, "file:" + encoded.mid(7)}) {
        QCOMPARE(fileURLs(address).size(), isFile ? 1 : 0);
        QCOMPARE(fileURLs("file:///before\r\n" + address + "\r\nfile:///after").size(), isFile ? 3 : 0);
    }
}

void FileURLsTest::a_list_is_read_up_to_its_bounds()
{
    const QByteArray line = "file:///home/a\r\n";
    QCOMPARE(fileURLs(line.repeated(kMostAddresses)).size(), kMostAddresses);
    QCOMPARE(fileURLs(line.repeated(kMostAddresses + 1)).size(), kMostAddresses);
    // A line that the bound cuts is ignored.
    const QByteArray longLine = "file:///" + QByteArray("b/").repeated(1000) + '\n';
    const QList<QUrl> urls = fileURLs(repeated(longLine, kLongestAddressList + longLine.size()));
    QCOMPARE(urls.size(), kLongestAddressList / longLine.size());
    QCOMPARE(urls.last(), urls.first());
}

void FileURLsTest::one_that_is_no_file_counts_within_the_bounds()
{
    const QByteArray line = "file:///home/a\n";
    QCOMPARE(fileURLs(line.repeated(kMostAddresses - 1) + "https://example.org/\n"), QList<QUrl>{});
    QCOMPARE(fileURLs(line.repeated(kMostAddresses) + "https://example.org/\n").size(), kMostAddresses);
}

void FileURLsTest::a_list_of_a_hundred_megabytes_takes_no_time_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("files") << QByteArray("file:///home/somebody/a%20folder/picture.png\r\n");
    QTest::newRow("files, oddly spelled") << QByteArray("file:/a\n");
    QTest::newRow("the longest files") << "file:/" + QByteArray("a/").repeated(2000) + '\n';
    QTest::newRow("comments") << QByteArray("#\n");
    QTest::newRow("empty lines") << QByteArray("\n");
    QTest::newRow("one line") << QByteArray("a");
    QTest::newRow("other bytes") << QByteArray("\0\xff", 2);
}

void FileURLsTest::a_list_of_a_hundred_megabytes_takes_no_time()
{
    QFETCH(const QByteArray, line);
    const QByteArray list = repeated(line, kHundredMegabytes);
    const double before = processorTime();
    const auto urls = fileURLs(list);
    const auto linked = linkedFileURLs(list);
    const double spent = processorTime() - before;
    QVERIFY(urls.size() <= kMostAddresses && linked.size() <= 1);
    QVERIFY2(spent < kNoTime, QByteArray::number(spent).constData());
}

PARKLET_GUILESS_TEST(FileURLsTest)
#include "FileURLsTest.moc"
