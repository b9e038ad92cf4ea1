// SPDX-License-Identifier: MIT
#include "platform/FileURLs.h"
#include "tests/support/TestProgram.h"

#include <QTest>

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
};

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
    // Half a letter at the end is no matter.
    QTEST(linkedFileURLs(bytes + '\n'), "urls");
}

PARKLET_GUILESS_TEST(FileURLsTest)
#include "FileURLsTest.moc"
