// SPDX-License-Identifier: MIT
#include "settings/BuildInfo.h"
#include "tests/support/TestProgram.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QTest>
#include <QUrlQuery>

using namespace Qt::StringLiterals;

class BuildInfoTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCoreApplication::setApplicationVersion(QString()); }

    void the_running_version_is_the_applications_own();
    void an_application_without_a_version_runs_as_1_0();
    void the_version_of_the_build_is_made_of_dotted_numbers();
    void the_settings_of_the_build_are_what_it_reports();
    void the_makers_page_is_a_web_address_that_names_this_application();
    void the_version_record_is_a_secure_web_address_of_a_json_file();
    void the_makers_line_is_one_line_of_year_and_name();
};

void BuildInfoTest::the_running_version_is_the_applications_own()
{
    QCoreApplication::setApplicationVersion(u"3.1.4"_s);
    QCOMPARE(BuildInfo::runningVersion(), u"3.1.4"_s);
}

void BuildInfoTest::an_application_without_a_version_runs_as_1_0()
{
    QCoreApplication::setApplicationVersion(QString());
    QCOMPARE(BuildInfo::runningVersion(), u"1.0"_s);
}

void BuildInfoTest::the_version_of_the_build_is_made_of_dotted_numbers()
{
    const QStringList parts = BuildInfo::builtVersion().split(QLatin1Char('.'));
    QVERIFY(parts.size() >= 2);
    for (const QString &part : parts) {
        bool isNumber = false;
        part.toUInt(&isNumber);
        QVERIFY2(isNumber, qPrintable(part));
    }
}

void BuildInfoTest::the_settings_of_the_build_are_what_it_reports()
{
    QCOMPARE(BuildInfo::builtVersion(), QStringLiteral(EXPECTED_VERSION));
    QCOMPARE(BuildInfo::moreAppsURL(), QUrl(QString::fromUtf8(EXPECTED_MORE_APPS_URL), QUrl::StrictMode));
    QCOMPARE(BuildInfo::makerLine(), QString::fromUtf8(EXPECTED_MAKER_LINE));
}

void BuildInfoTest::the_makers_page_is_a_web_address_that_names_this_application()
{
    const QUrl url = BuildInfo::moreAppsURL();
    QVERIFY(url.isValid());
    QCOMPARE(url.scheme(), u"https"_s);
    QCOMPARE(QUrlQuery(url).queryItemValue(u"ref"_s), u"parklet"_s);
}

void BuildInfoTest::the_version_record_is_a_secure_web_address_of_a_json_file()
{
    const QUrl url = BuildInfo::versionURL();
    QVERIFY(url.isValid());
    QCOMPARE(url.scheme(), u"https"_s);
    QVERIFY(url.path().endsWith(QLatin1String("/version.json")));
    QCOMPARE(url, QUrl(QStringLiteral(EXPECTED_VERSION_URL)));
}

void BuildInfoTest::the_makers_line_is_one_line_of_year_and_name()
{
    const QString line = BuildInfo::makerLine();
    QVERIFY(!line.contains(QLatin1Char('\n')));
    QVERIFY2(line.contains(QRegularExpression(u"\\b\\d{4}\\b"_s)), qPrintable(line));
    QVERIFY2(line.contains(u"Orvane"_s), qPrintable(line));
}

PARKLET_GUILESS_TEST(BuildInfoTest)
#include "BuildInfoTest.moc"
