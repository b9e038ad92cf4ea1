// SPDX-License-Identifier: MIT
#include "updates/UpdateAlerts.h"

#include "platform/Alerts.h"
#include "tests/support/TestProgram.h"
#include "updates/VersionRecord.h"

#include <QTest>

using namespace Qt::StringLiterals;

class UpdateAlertsTest : public QObject {
    Q_OBJECT

private slots:
    void the_update_alert_tells_the_version_and_the_notes();
    void the_update_alert_without_notes_tells_the_version_only();
    void the_update_alert_keeps_blanks();
    void the_update_alert_shows_the_beginning_of_long_texts();
    void the_up_to_date_alert_has_one_button();
};

void UpdateAlertsTest::the_update_alert_tells_the_version_and_the_notes()
{
    const Alert alert = updateAlert({u"2.0"_s, QUrl(), u"Faster.\n<b>Better.</b>"_s});
    QCOMPARE(alert.messageText, u"Parklet update available"_s);
    QCOMPARE(alert.informativeText, u"Version 2.0 is available.\n\nRelease notes: Faster.\n<b>Better.</b>"_s);
    QCOMPARE(alert.buttons, (QStringList{u"Download Update"_s, u"Later"_s}));
    QVERIFY(alert.checkboxTitle.isEmpty());
    QVERIFY(alert.icon.isNull()); // the application's own
    QVERIFY(!alert.dark);
    QVERIFY(alert.activates);
}

void UpdateAlertsTest::the_update_alert_without_notes_tells_the_version_only()
{
    const Alert alert = updateAlert({u"%1 %2"_s, QUrl(), QString()});
    QCOMPARE(alert.informativeText, u"Version %1 %2 is available."_s);
}

void UpdateAlertsTest::the_update_alert_keeps_blanks()
{
    const Alert alert = updateAlert({u" 2.0"_s, QUrl(), u" "_s});
    QCOMPARE(alert.informativeText, u"Version  2.0 is available.\n\nRelease notes:  "_s);
}

void UpdateAlertsTest::the_update_alert_shows_the_beginning_of_long_texts()
{
    const QString longest(64, u'1');
    const QString notes(4000, u'n');
    const QString full = updateAlert({longest, QUrl(), notes}).informativeText;
    QCOMPARE(full, u"Version %1 is available.\n\nRelease notes: %2"_s.arg(longest, notes));
    const QString cut = updateAlert({QString(1'000'000, u'1'), QUrl(), QString(1'000'000, u'n')}).informativeText;
    QCOMPARE(cut, u"Version %1… is available.\n\nRelease notes: %2…"_s.arg(longest, notes));
}

void UpdateAlertsTest::the_up_to_date_alert_has_one_button()
{
    const Alert alert = upToDateAlert();
    QCOMPARE(alert.messageText, u"Parklet is up to date"_s);
    QCOMPARE(alert.informativeText, u"You're running the latest version."_s);
    QCOMPARE(alert.buttons, QStringList{u"OK"_s});
    QVERIFY(alert.checkboxTitle.isEmpty());
    QVERIFY(!alert.dark);
    QVERIFY(alert.icon.isNull());
    QVERIFY(alert.activates);
}

PARKLET_GUILESS_TEST(UpdateAlertsTest)
#include "UpdateAlertsTest.moc"
