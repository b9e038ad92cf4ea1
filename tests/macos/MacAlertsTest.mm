// SPDX-License-Identifier: MIT
#include "platform/macos/MacAlerts.h"

#include "platform/macos/MacConversions.h"
#include "tests/macos/ModalLoop.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QTest>
#include <QTimer>

#include <functional>

#import <AppKit/AppKit.h>

// What an alert looks like; what it answers is in its contract.
class MacAlertsTest : public QObject {
    Q_OBJECT

private slots:
    void a_dark_alert_is_dark();
    void any_other_alert_looks_as_the_system_does();
    void a_long_text_has_the_colour_of_other_texts();
    void an_alert_is_in_front_whatever_is_active();
    void an_alert_that_is_broken_off_was_closed_without_a_button();
    void an_alert_may_follow_a_loop_of_qts_at_once();
};

namespace {

// Shows the alert, has a look at its window and breaks it off.
AlertAnswer show(const Alert &alert, const std::function<void(NSWindow *)> &look)
{
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        NSWindow *window = NSApplication.sharedApplication.modalWindow;
        if (!window)
            return;
        timer.stop();
        look(window);
        abortModalLoop();
    });
    timer.start(20);
    return MacAlerts().runModal(alert);
}

// The name of its window's own appearance, empty when it has none.
QString appearanceOf(const Alert &alert)
{
    QString name;
    show(alert, [&name](NSWindow *window) { name = fromNSString(window.appearance.name); });
    return name;
}

NSTextView *scrolledTextIn(NSView *view)
{
    if ([view isKindOfClass:[NSScrollView class]])
        return static_cast<NSScrollView *>(view).documentView;
    for (NSView *subview in view.subviews) {
        if (NSTextView *text = scrolledTextIn(subview))
            return text;
    }
    return nil;
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

void MacAlertsTest::a_long_text_has_the_colour_of_other_texts()
{
    Alert alert = question();
    alert.informativeText = QStringLiteral("One more line.\n").repeated(2000);
    NSColor *color = nil;
    show(alert, [&color](NSWindow *window) { color = scrolledTextIn(window.contentView).textColor; });
    QVERIFY([color isEqual:NSColor.labelColor]);
}

void MacAlertsTest::an_alert_is_in_front_whatever_is_active()
{
    Alert alert = question();
    alert.activates = false;
    bool isVisible = false;
    NSInteger level = 0;
    [NSApplication.sharedApplication deactivate];
    show(alert, [&](NSWindow *window) {
        isVisible = window.visible && !window.hidesOnDeactivate;
        level = window.level;
    });
    QVERIFY(isVisible);
    QCOMPARE(level, NSInteger{8});
}

void MacAlertsTest::an_alert_that_is_broken_off_was_closed_without_a_button()
{
    QCOMPARE(show(question(), [](NSWindow *) {}).button, -1);
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

PARKLET_TEST(MacAlertsTest)

#include "MacAlertsTest.moc"
