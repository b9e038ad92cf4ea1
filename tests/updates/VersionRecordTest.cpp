// SPDX-License-Identifier: MIT
#include "updates/VersionRecord.h"

#include "tests/support/TestProgram.h"

#include <QTest>

using namespace Qt::StringLiterals;

class VersionRecordTest : public QObject {
    Q_OBJECT

private slots:
    void a_record_is_read_with_all_its_fields();
    void notes_are_empty_unless_they_are_a_string_data();
    void notes_are_empty_unless_they_are_a_string();
    void an_empty_version_is_a_version();
    void a_url_that_parses_is_enough_data();
    void a_url_that_parses_is_enough();
    void blanks_stay_as_they_are();
    void what_is_no_record_is_nothing_data();
    void what_is_no_record_is_nothing();
};

void VersionRecordTest::a_record_is_read_with_all_its_fields()
{
    const auto record =
        parseVersionRecord("\n {\"other\": [1, {}], \"version\": \"2.0\", \"notes\": \"Fixes \\u00e9\\nand more\","
                           " \"url\": \"https://example.com/get?v=2#top\"} \n");
    QVERIFY(record);
    QCOMPARE(record->version, u"2.0"_s);
    QCOMPARE(record->url, QUrl(u"https://example.com/get?v=2#top"_s));
    QCOMPARE(record->notes, u"Fixes \u00e9\nand more"_s);
}

void VersionRecordTest::notes_are_empty_unless_they_are_a_string_data()
{
    QTest::addColumn<QByteArray>("notes");
    QTest::newRow("absent") << QByteArray();
    QTest::newRow("null") << QByteArray(", \"notes\": null");
    QTest::newRow("a number") << QByteArray(", \"notes\": 7");
    QTest::newRow("an array") << QByteArray(", \"notes\": [\"a\"]");
    QTest::newRow("empty") << QByteArray(", \"notes\": \"\"");
}

void VersionRecordTest::notes_are_empty_unless_they_are_a_string()
{
    QFETCH(const QByteArray, notes);
    const auto record = parseVersionRecord("{\"version\": \"2.0\", \"url\": \"https://example.com/\"" + notes + '}');
    QVERIFY(record);
    QCOMPARE(record->notes, QString());
}

void VersionRecordTest::an_empty_version_is_a_version()
{
    const auto record = parseVersionRecord("{\"version\": \"\", \"url\": \"https://example.com/\"}");
    QVERIFY(record);
    QCOMPARE(record->version, QString());
}

void VersionRecordTest::a_url_that_parses_is_enough_data()
{
    QTest::addColumn<QString>("address");
    for (const char *address : {"get", "mailto:a@example.com"})
        QTest::newRow(address) << QString::fromLatin1(address);
}

void VersionRecordTest::a_url_that_parses_is_enough()
{
    QFETCH(const QString, address);
    const auto record = parseVersionRecord("{\"version\": \"2.0\", \"url\": \"" + address.toUtf8() + "\"}");
    QVERIFY(record);
    QCOMPARE(record->url, QUrl(address));
}

void VersionRecordTest::blanks_stay_as_they_are()
{
    const auto record =
        parseVersionRecord("{\"version\": \" 2.0\", \"url\": \"https://example.com/\", \"notes\": \" \"}");
    QVERIFY(record);
    QCOMPARE(record->version, u" 2.0"_s);
    QCOMPARE(record->notes, u" "_s);
}

void VersionRecordTest::what_is_no_record_is_nothing_data()
{
    QTest::addColumn<QByteArray>("body");
    const auto row = [](const char *name, const char *body) { QTest::newRow(name) << QByteArray(body); };
    row("empty", "");
    row("white space", " \n");
    row("HTML", "<!DOCTYPE html><html><body>Not found</body></html>");
    row("cut short", "{\"version\": \"2.0\", \"url\": \"https://example.com/\"");
    row("two objects", "{\"version\": \"2.0\", \"url\": \"https://example.com/\"}{}");
    row("an array", "[{\"version\": \"2.0\", \"url\": \"https://example.com/\"}]");
    row("a string", "\"2.0\"");
    row("null", "null");
    row("no UTF-8", "{\"version\": \"2.0\", \"url\": \"https://example.com/\", \"notes\": \"\xff\"}");
    row("an empty object", "{}");
    row("no version", "{\"url\": \"https://example.com/\"}");
    row("other case", "{\"Version\": \"2.0\", \"url\": \"https://example.com/\"}");
    row("a version that is a number", "{\"version\": 2.0, \"url\": \"https://example.com/\"}");
    row("a version that is null", "{\"version\": null, \"url\": \"https://example.com/\"}");
    row("a version that is an array", "{\"version\": [\"2.0\"], \"url\": \"https://example.com/\"}");
    row("no url", "{\"version\": \"2.0\"}");
    row("a url that is a number", "{\"version\": \"2.0\", \"url\": 1}");
    row("a url that is an object", "{\"version\": \"2.0\", \"url\": {}}");
    row("an empty url", "{\"version\": \"2.0\", \"url\": \"\"}");
    row("a url with a space", "{\"version\": \"2.0\", \"url\": \"https://example.com/a b\"}");
    row("a url with a bad escape", "{\"version\": \"2.0\", \"url\": \"https://example.com/%zz\"}");
    row("a url with a bad port", "{\"version\": \"2.0\", \"url\": \"https://example.com:99999/\"}");
    row("a url with an open bracket", "{\"version\": \"2.0\", \"url\": \"https://[::1\"}");
}

void VersionRecordTest::what_is_no_record_is_nothing()
{
    QFETCH(const QByteArray, body);
    QVERIFY(!parseVersionRecord(body));
}

PARKLET_GUILESS_TEST(VersionRecordTest)
#include "VersionRecordTest.moc"
