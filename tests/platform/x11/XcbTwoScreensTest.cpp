// SPDX-License-Identifier: MIT
#include "platform/linux/x11/XcbFloatingPanels.h"
#include "platform/linux/x11/XcbScreens.h"
#include "tests/support/FakeInput.h"
#include "tests/support/ForeignWindow.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QScopeGuard>
#include <QTest>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace {

constexpr int kPatience = 10'000; // milliseconds
const QRectF kLeft(0, 0, 640, 800);
const QRectF kRight(640, 0, 640, 800);

// One X screen of two monitors side by side.
class XcbTwoScreensTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { screens.reset(); }
    void both_screens_are_told();
    void a_dock_reserves_space_on_its_own_screen();
    void a_dock_at_the_edge_between_the_screens_reserves_space_on_its_own();
    void a_desktop_that_draws_its_own_bar_reserves_space_too();
    void the_main_screen_is_that_of_the_active_window();
    void a_window_of_our_own_counts_too();
    void a_floating_panel_does_not_count();
    void without_an_active_window_the_pointer_decides();

private:
    QList<QRectF> visibleFrames() const
    {
        QList<QRectF> frames;
        for (const Screen &screen : screens->all())
            frames.append(screen.visibleFrame);
        return frames;
    }

    std::unique_ptr<XcbScreens> screens;
};

void XcbTwoScreensTest::init()
{
    screens = std::make_unique<XcbScreens>(XcbConnection::open());
    QTRY_COMPARE_WITH_TIMEOUT(visibleFrames(), (QList<QRectF>{kLeft, kRight}), kPatience);
}

void XcbTwoScreensTest::both_screens_are_told()
{
    const QList<Screen> all = screens->all();
    QCOMPARE(all.size(), 2);
    QCOMPARE(all.at(0).frame, kLeft);
    QCOMPARE(all.at(1).frame, kRight);
}

void XcbTwoScreensTest::a_dock_reserves_space_on_its_own_screen()
{
    ForeignWindow dock(QRect(0, 0, 640, 30), Qt::gray, ForeignWindow::Kind::Dock);
    dock.setStrut({0, 0, 30, 0, 0, 0, 0, 0, 0, 639, 0, 0});
    dock.show();
    QTRY_COMPARE_WITH_TIMEOUT(visibleFrames(), (QList<QRectF>{kLeft.adjusted(0, 30, 0, 0), kRight}), kPatience);
}

void XcbTwoScreensTest::a_dock_at_the_edge_between_the_screens_reserves_space_on_its_own()
{
    ForeignWindow dock(QRect(640, 0, 50, 800), Qt::gray, ForeignWindow::Kind::Dock);
    dock.setStrut({690, 0, 0, 0, 0, 799, 0, 0, 0, 0, 0, 0});
    dock.show();
    QTRY_COMPARE_WITH_TIMEOUT(visibleFrames(), (QList<QRectF>{kLeft, kRight.adjusted(50, 0, 0, 0)}), kPatience);
}

void XcbTwoScreensTest::a_desktop_that_draws_its_own_bar_reserves_space_too()
{
    const auto xcb = XcbConnection::open();
    int reports = 0;
    screens->onChange = [&] { ++reports; };
    const std::vector<quint32> areas = {0, 27, 640, 773, 640, 0, 640, 800};
    const xcb_atom_t property = xcb->atom("_GTK_WORKAREAS_D0");
    QVERIFY(xcb->succeeded(xcb_change_property_checked(xcb->get(), XCB_PROP_MODE_REPLACE, xcb->root(), property,
                                                       XCB_ATOM_CARDINAL, 32, 8, areas.data())));
    QTRY_COMPARE_WITH_TIMEOUT(visibleFrames(), (QList<QRectF>{kLeft.adjusted(0, 27, 0, 0), kRight}), kPatience);
    QTRY_VERIFY_WITH_TIMEOUT(reports > 0, kPatience);
    reports = 0;
    QVERIFY(xcb->succeeded(xcb_delete_property_checked(xcb->get(), xcb->root(), property)));
    QTRY_VERIFY_WITH_TIMEOUT(reports > 0, kPatience);
    screens->onChange = nullptr;
}

void XcbTwoScreensTest::the_main_screen_is_that_of_the_active_window()
{
    FakeInput hand;
    hand.pointerMotion({100, 100});
    ForeignWindow window(QRect(700, 100, 300, 200), Qt::green);
    window.show();
    QTRY_VERIFY_WITH_TIMEOUT(isActive(window.connection(), window.id()), kPatience);
    QTRY_COMPARE_WITH_TIMEOUT(screens->main()->frame, kRight, kPatience);
    hand.pointerMotion({1000, 100});
    ForeignWindow other(QRect(50, 100, 600, 200), Qt::blue);
    other.show();
    QTRY_VERIFY_WITH_TIMEOUT(isActive(window.connection(), other.id()), kPatience);
    QTRY_COMPARE_WITH_TIMEOUT(screens->main()->frame, kLeft, kPatience);
}

void XcbTwoScreensTest::a_window_of_our_own_counts_too()
{
    FakeInput hand;
    hand.pointerMotion({100, 100});
    QWidget window;
    window.setGeometry(800, 200, 200, 200);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QTRY_COMPARE_WITH_TIMEOUT(screens->main()->frame, kRight, kPatience);
}

void XcbTwoScreensTest::a_floating_panel_does_not_count()
{
    FakeInput hand;
    ForeignWindow window(QRect(50, 100, 300, 200), Qt::green);
    window.show();
    QTRY_VERIFY_WITH_TIMEOUT(isActive(window.connection(), window.id()), kPatience);
    XcbFloatingPanels panels(XcbConnection::open());
    QWidget panel;
    panels.make(panel, {u"shelf"_s, 14});
    panel.setGeometry(1100, 200, 116, 164);
    panels.orderFront(panel);
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
    hand.click({1150, 280});
    QCOMPARE(screens->main()->frame, kLeft);
    // The panel stays on its screen even when a window manager makes it the active window.
    XcbConnection &xcb = window.connection();
    const quint32 id = static_cast<quint32>(panel.winId());
    QVERIFY(xcb.succeeded(xcb_change_property_checked(xcb.get(), XCB_PROP_MODE_REPLACE, xcb.root(),
                                                      xcb.atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW, 32, 1, &id)));
    const auto tidy = qScopeGuard(
        [&] { xcb.succeeded(xcb_delete_property_checked(xcb.get(), xcb.root(), xcb.atom("_NET_ACTIVE_WINDOW"))); });
    hand.pointerMotion({10, 10});
    QTRY_COMPARE_WITH_TIMEOUT(screens->pointer().value_or(QPointF()), QPointF(10, 10), kPatience);
    QCOMPARE(screens->main()->frame, kLeft);
}

void XcbTwoScreensTest::without_an_active_window_the_pointer_decides()
{
    FakeInput hand;
    hand.pointerMotion({1000, 400});
    const auto xcb = XcbConnection::open();
    QTRY_COMPARE_WITH_TIMEOUT(activeWindow(*xcb), xcb_window_t{XCB_NONE}, kPatience);
    QTRY_COMPARE_WITH_TIMEOUT(screens->main()->frame, kRight, kPatience);
    hand.pointerMotion({100, 400});
    QTRY_COMPARE_WITH_TIMEOUT(screens->main()->frame, kLeft, kPatience);
}

} // namespace

PARKLET_TEST(XcbTwoScreensTest)
#include "XcbTwoScreensTest.moc"
