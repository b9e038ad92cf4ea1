// SPDX-License-Identifier: MIT
#include "platform/EventMonitors.h"
#include "platform/macos/MacFloatingPanels.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QTest>
#include <QWidget>
#include <QWindow>

#import <AppKit/AppKit.h>
#import <QuartzCore/QuartzCore.h>

// The numbers of the panels behind the shelf and the cursor shelf, also after all that makes Qt set its own.
class MacPanelTest : public QObject {
    Q_OBJECT

private slots:
    void a_panel_has_its_properties_data() { roles(); }
    void a_panel_has_its_properties();
    void it_keeps_them_while_another_application_is_active_data() { roles(); }
    void it_keeps_them_while_another_application_is_active();
    void it_keeps_them_when_it_is_shown_again_data() { roles(); }
    void it_keeps_them_when_it_is_shown_again();
    void a_new_native_window_has_them_too_data() { roles(); }
    void a_new_native_window_has_them_too();
    void only_the_shelf_can_have_the_keyboard();
    void none_can_be_the_main_window_data() { roles(); }
    void none_can_be_the_main_window();
    void the_material_lies_under_the_content();
    void new_window_flags_cost_no_size();
    void showing_a_panel_does_not_activate();
    void the_pointer_is_followed_in_whatever_application();
    void the_pointer_comes_and_goes_while_the_application_is_not_active();
    void what_follows_the_pointer_may_outlive_the_panel();
    void the_masks_of_the_monitors_are_the_systems();

private:
    static void roles();
};

namespace {

struct Panel {
    explicit Panel(const QString &role)
    {
        panels.make(window, {role, 14});
        window.setGeometry(300, 200, 116, 164);
        panels.orderFront(window);
    }

    NSView *contents() const { return (__bridge NSView *)reinterpret_cast<void *>(window.winId()); }
    NSPanel *native() const { return static_cast<NSPanel *>(contents().window); }

    MacFloatingPanels panels;
    QWidget window;
};

// Notes when the pointer comes and goes.
class Hovered : public QWidget {
public:
    using QWidget::QWidget;

    QStringList calls;

protected:
    void enterEvent(QEnterEvent *) override { calls.append(QStringLiteral("enter")); }
    void leaveEvent(QEvent *) override { calls.append(QStringLiteral("leave")); }
    void mouseMoveEvent(QMouseEvent *) override { calls.append(QStringLiteral("move")); }
};

NSTrackingArea *ourArea(NSView *view)
{
    for (NSTrackingArea *area in view.trackingAreas) {
        if (area.options == 0x283)
            return area;
    }
    return nil;
}

// The material under what Qt draws into `contents`: inside it, under the layer of Qt's own, or beside it.
NSVisualEffectView *materialOf(NSView *contents)
{
    for (NSView *inside in contents.subviews) {
        if ([inside isKindOfClass:[NSVisualEffectView class]] && inside.layer.zPosition < 0)
            return static_cast<NSVisualEffectView *>(inside);
    }
    NSArray<NSView *> *beside = contents.superview.subviews;
    const NSUInteger place = [beside indexOfObject:contents];
    if (contents.layer.sublayers.count > 0 || place == 0 ||
        ![beside[place - 1] isKindOfClass:[NSVisualEffectView class]])
        return nil;
    return static_cast<NSVisualEffectView *>(beside[place - 1]);
}

// Makes this application one that is not active, whatever it was before.
bool deactivate()
{
    NSApplication *application = NSApplication.sharedApplication;
    [application activateIgnoringOtherApps:YES];
    // It comes about only after a while, and not at all where the system does not want it.
    (void)QTest::qWaitFor([application] { return application.active == YES; }, 2000);
    [application deactivate];
    return QTest::qWaitFor([application] { return !application.active; });
}

void compareProperties(NSPanel *panel)
{
    QVERIFY([panel isKindOfClass:[NSPanel class]]);
    QCOMPARE(panel.styleMask, NSWindowStyleMask{0x8080});
    QCOMPARE(panel.level, NSWindowLevel{3});
    QCOMPARE(panel.collectionBehavior, NSWindowCollectionBehavior{0x111});
    QVERIFY(panel.floatingPanel);
    QVERIFY(!panel.hidesOnDeactivate);
    QVERIFY(!panel.movableByWindowBackground);
    QVERIFY(panel.hasShadow);
    QVERIFY(!panel.opaque);
    QCOMPARE(panel.backgroundColor.alphaComponent, CGFloat{0});
    QCOMPARE(panel.animationBehavior, NSWindowAnimationBehavior{2});
    QVERIFY([panel.appearance.name isEqualToString:NSAppearanceNameDarkAqua]);
}

} // namespace

void MacPanelTest::roles()
{
    QTest::addColumn<QString>("role");
    QTest::newRow("shelf") << QStringLiteral("shelf");
    QTest::newRow("cursor shelf") << QStringLiteral("cursor-shelf");
}

void MacPanelTest::a_panel_has_its_properties()
{
    QFETCH(QString, role);
    const Panel panel(role);
    compareProperties(panel.native());
}

void MacPanelTest::it_keeps_them_while_another_application_is_active()
{
    QFETCH(QString, role);
    const Panel panel(role);
    QVERIFY(deactivate());
    compareProperties(panel.native());
    QVERIFY(panel.native().visible);
    [NSApplication.sharedApplication activateIgnoringOtherApps:YES];
    if (!QTest::qWaitFor([] { return NSApplication.sharedApplication.active == YES; }))
        QSKIP("The system does not make this application active");
    compareProperties(panel.native());
}

void MacPanelTest::it_keeps_them_when_it_is_shown_again()
{
    QFETCH(QString, role);
    Panel panel(role);
    panel.panels.orderOut(panel.window);
    QVERIFY(!panel.native().visible);
    panel.panels.orderFront(panel.window);
    compareProperties(panel.native());
    panel.panels.orderOut(panel.window);
    panel.window.show();
    compareProperties(panel.native());
}

void MacPanelTest::a_new_native_window_has_them_too()
{
    QFETCH(QString, role);
    Panel panel(role);
    const Qt::WindowFlags flags = panel.window.windowFlags();
    panel.window.setWindowFlags(Qt::Window);
    panel.window.setWindowFlags(flags);
    panel.panels.orderFront(panel.window);
    compareProperties(panel.native());
}

void MacPanelTest::only_the_shelf_can_have_the_keyboard()
{
    QVERIFY(Panel(QStringLiteral("shelf")).native().canBecomeKeyWindow);
    QVERIFY(!Panel(QStringLiteral("cursor-shelf")).native().canBecomeKeyWindow);
}

void MacPanelTest::none_can_be_the_main_window()
{
    QFETCH(QString, role);
    QVERIFY(!Panel(role).native().canBecomeMainWindow);
}

void MacPanelTest::the_material_lies_under_the_content()
{
    const Panel panel(QStringLiteral("shelf"));
    NSVisualEffectView *background = materialOf(panel.contents());
    QVERIFY(background);
    QCOMPARE(background.material, NSVisualEffectMaterial{13});
    QCOMPARE(background.blendingMode, NSVisualEffectBlendingMode{0});
    QCOMPARE(background.state, NSVisualEffectState{1});
    QCOMPARE(QSizeF::fromCGSize(background.frame.size), QSizeF(116, 164));
    // Its corners, and the pointer is the content's.
    QCOMPARE(QSizeF::fromCGSize(background.maskImage.size), QSizeF(29, 29));
    QCOMPARE(background.maskImage.capInsets.left, CGFloat{14});
    const NSPoint middle = {50, 50};
    QVERIFY(![background hitTest:middle]);
}

void MacPanelTest::new_window_flags_cost_no_size()
{
    Panel panel(QStringLiteral("shelf"));
    const QRectF before = QRectF::fromCGRect(panel.native().frame);
    panel.window.windowHandle()->setFlag(Qt::WindowDoesNotAcceptFocus);
    panel.panels.orderFront(panel.window);
    compareProperties(panel.native());
    QCOMPARE(QRectF::fromCGRect(panel.native().frame), before);
    QCOMPARE(panel.window.geometry(), QRect(300, 200, 116, 164));
}

void MacPanelTest::showing_a_panel_does_not_activate()
{
    QVERIFY(deactivate());
    const Panel panel(QStringLiteral("shelf"));
    QVERIFY(panel.native().visible);
    QVERIFY(!NSApplication.sharedApplication.active);
    QVERIFY(!panel.native().keyWindow);
}

void MacPanelTest::the_pointer_is_followed_in_whatever_application()
{
    const Panel panel(QStringLiteral("shelf"));
    QVERIFY(ourArea(panel.contents()));
    QVERIFY(ourArea(panel.contents()).owner);
}

void MacPanelTest::the_pointer_comes_and_goes_while_the_application_is_not_active()
{
    Panel panel(QStringLiteral("shelf"));
    auto *const view = new Hovered(&panel.window);
    view->setMouseTracking(true);
    view->setGeometry(panel.window.rect());
    view->show();
    QVERIFY(deactivate());
    QCursor::setPos(panel.window.mapToGlobal(panel.window.rect().center()));
    if (!QTest::qWaitFor([&panel] { return panel.window.geometry().contains(QCursor::pos()); }))
        QSKIP("The pointer cannot be moved");

    id owner = ourArea(panel.contents()).owner;
    NSEvent *event = NSApplication.sharedApplication.currentEvent;
    // The system may have told of the pointer by itself.
    [owner mouseExited:event];
    view->calls.clear();
    [owner mouseMoved:event];
    QCOMPARE(view->calls.value(0), QStringLiteral("enter"));
    QCOMPARE(view->calls.value(1), QStringLiteral("move"));
    [owner mouseExited:event];
    QCOMPARE(view->calls.value(2), QStringLiteral("leave"));
    [owner mouseMoved:event];
    panel.panels.orderOut(panel.window);
    QCOMPARE(view->calls.count(QStringLiteral("enter")), 2);
    QCOMPARE(view->calls.count(QStringLiteral("leave")), 2);
}

void MacPanelTest::what_follows_the_pointer_may_outlive_the_panel()
{
    id owner = nil;
    {
        const Panel panel(QStringLiteral("shelf"));
        owner = ourArea(panel.contents()).owner;
        QVERIFY(owner);
    }
    QVERIFY(deactivate());
    NSEvent *event = NSApplication.sharedApplication.currentEvent;
    [owner mouseMoved:event];
    [owner mouseExited:event];
}

void MacPanelTest::the_masks_of_the_monitors_are_the_systems()
{
    QCOMPARE(quint32{LeftMouseUp}, 4U);
    QCOMPARE(quint32{LeftMouseDragged}, 64U);
    QCOMPARE(NSEventMask{NSEventMaskLeftMouseUp}, NSEventMask{LeftMouseUp});
    QCOMPARE(NSEventMask{NSEventMaskLeftMouseDragged}, NSEventMask{LeftMouseDragged});
}

PARKLET_TEST(MacPanelTest)

#include "MacPanelTest.moc"
