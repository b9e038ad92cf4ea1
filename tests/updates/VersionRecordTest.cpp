// SPDX-License-Identifier: MIT
#include "updates/VersionRecord.h"

#include "platform/Alerts.h"
#include "tests/support/TestProgram.h"

#include <QTest>

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
    void the_update_alert_tells_the_version_and_the_notes();
    void the_update_alert_without_notes_tells_the_version_only();
    void the_update_alert_shows_the_beginning_of_long_texts();
    void the_up_to_date_alert_has_one_button();
};

void VersionRecordTest::a_record_is_read_with_all_its_fields()
{
    const auto record =
        parseVersionRecord("\n {\"other\": [1, {}], \"version\": \"2.0\", \"notes\": \"Fixes \\u00e9\\nand more\","
                           " \"url\": \"https://example.com/get?v=2#top\"} \n");
    QVERIFY(record);
    QCOMPARE(record->version, QStringLiteral("2.0"));
    QCOMPARE(record->url, QUrl(QStringLiteral("https://example.com/get?v=2#top")));
    QCOMPARE(record->notes, QStringLiteral("Fixes \u00e9\nand more"));
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
    QCOMPARE(record->version, QStringLiteral(" 2.0"));
    QCOMPARE(updateAlert(*record).informativeText, QStringLiteral("Version  2.0 is available.\n\nRelease notes:  "));
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

void VersionRecordTest::the_update_alert_tells_the_version_and_the_notes()
{
    const Alert alert = updateAlert({QStringLiteral("2.0"), QUrl(), QStringLiteral("Faster.\n<b>Better.</b>")});
    QCOMPARE(alert.messageText, QStringLiteral("Parklet update available"));
    QCOMPARE(alert.informativeText,
             QStringLiteral("Version 2.0 is available.\n\nRelease notes: Faster.\n<b>Better.</b>"));
    QCOMPARE(alert.buttons, (QStringList{QStringLiteral("Download Update"), QStringLiteral("Later")}));
    QVERIFY(alert.checkboxTitle.isEmpty());
    QVERIFY(alert.icon.isNull()); // the application's own
    QVERIFY(!alert.dark);
    QVERIFY(alert.activates);
}

void VersionRecordTest::the_update_alert_without_notes_tells_the_version_only()
{
    const Alert alert = updateAlert({QStringLiteral("%1 %2"), QUrl(), QString()});
    QCOMPARE(alert.informativeText, QStringLiteral("Version %1 %2 is available."));
}

void VersionRecordTest::the_update_alert_shows_the_beginning_of_long_texts()
{
    const QString longest(64, u'1');
    const QString notes(4000, u'n');
    const QString full = updateAlert({longest, QUrl(), notes}).informativeText;
    QCOMPARE(full, QStringLiteral("Version %1 is available.\n\nRelease notes: %2").arg(longest, notes));
    const QString cut = updateAlert({QString(1'000'000, u'1'), QUrl(), QString(1'000'000, u'n')}).informativeText;
    QCOMPARE(cut, QStringLiteral("Version %1… is available.\n\nRelease notes: %2…").arg(longest, notes));
}

void VersionRecordTest::the_up_to_date_alert_has_one_button()
{
    const Alert alert = upToDateAlert();
    QCOMPARE(alert.messageText, QStringLiteral("Parklet is up to date"));
    QCOMPARE(alert.informativeText, QStringLiteral("You're running the latest version."));
    QCOMPARE(alert.buttons, QStringList{QStringLiteral("OK")});
    QVERIFY(alert.checkboxTitle.isEmpty());
    QVERIFY(!alert.dark);
    QVERIFY(alert.icon.isNull());
    QVERIFY(alert.activates);
}

PARKLET_GUILESS_TEST(VersionRecordTest)
#include "VersionRecordTest.moc"
