// SPDX-License-Identifier: MIT
#include "platform/macos/MacAlerts.h"

#include "platform/macos/MacConversions.h"

#include <QApplication>
#include <QTest>
#include <QTimer>

#import <AppKit/AppKit.h>

// What an alert looks like; what it answers is in its contract.
class MacAlertsTest : public QObject {
    Q_OBJECT

private slots:
    void a_dark_alert_is_dark();
    void any_other_alert_looks_as_the_system_does();
    void an_alert_that_is_broken_off_was_closed_without_a_button();
    void an_alert_may_follow_a_loop_of_qts_at_once();
};

namespace {

// Shows the alert and breaks it off; the name of its window's own appearance, empty when it has none.
QString appearanceOf(const Alert &alert, AlertAnswer *answer = nullptr)
{
    QString name;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &look, [&] {
        NSWindow *window = NSApplication.sharedApplication.modalWindow;
        if (!window)
            return;
        look.stop();
        name = fromNSString(window.appearance.name);
        [NSApplication.sharedApplication abortModal];
    });
    look.start(20);
    const AlertAnswer given = MacAlerts().runModal(alert);
    if (answer)
        *answer = given;
    return name;
}

Alert question()
{
    Alert alert;
    alert.messageText = QStringLiteral("Does this alert go away by itself?");
    alert.buttons = {QStringLiteral("Yes"), QStringLiteral("No")};
    return alert;
}

} // namespace

void MacAlertsTest::a_dark_alert_is_dark()
{
    Alert alert = question();
    alert.dark = true;
    QCOMPARE(appearanceOf(alert), fromNSString(NSAppearanceNameDarkAqua));
}

void MacAlertsTest::any_other_alert_looks_as_the_system_does()
{
    QCOMPARE(appearanceOf(question()), QString());
}

void MacAlertsTest::an_alert_that_is_broken_off_was_closed_without_a_button()
{
    AlertAnswer answer;
    appearanceOf(question(), &answer);
    QCOMPARE(answer.button, -1);
}

void MacAlertsTest::an_alert_may_follow_a_loop_of_qts_at_once()
{
    QString name = QStringLiteral("not shown");
    QEventLoop outer;
    QTimer::singleShot(0, &outer, [&] {
        QEventLoop inner;
        QTimer::singleShot(0, &inner, &QEventLoop::quit);
        inner.exec();
        Alert alert = question();
        alert.dark = true;
        name = appearanceOf(alert);
        outer.quit();
    });
    outer.exec();
    QCOMPARE(name, fromNSString(NSAppearanceNameDarkAqua));
}

QTEST_MAIN(MacAlertsTest)

#include "MacAlertsTest.moc"
