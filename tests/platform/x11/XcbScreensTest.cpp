// SPDX-License-Identifier: MIT
#include "platform/linux/x11/XcbScreens.h"
#include "tests/support/FakeInput.h"
#include "tests/support/ForeignWindow.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QScreen>
#include <QTest>
#include <QWidget>

namespace {

constexpr int kPatience = 10'000; // milliseconds
constexpr int kDepth = 40;        // pixels of the dock

class XcbScreensTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { screens.reset(); }
    void a_screen_is_told_in_points();
    void the_pointer_is_told_in_points();
    void a_dock_reserves_space_while_it_is_there();
    void a_change_that_has_been_read_is_reported_all_the_same();
    void a_dock_may_change_its_mind();
    void a_window_that_reserves_nothing_is_not_reported();
    void without_a_connection_qt_answers();

private:
    QRectF frame() const { return {0, 0, 1280 / scale, 800 / scale}; }
    QRectF visibleFrame() const { return screens->all().first().visibleFrame; }

    static bool isListed(ForeignWindow &window)
    {
        XcbConnection &xcb = window.connection();
        const auto windows = xcb.values(xcb.root(), xcb.atom("_NET_CLIENT_LIST"), XCB_ATOM_WINDOW);
        return std::find(windows.begin(), windows.end(), window.id()) != windows.end();
    }

    std::shared_ptr<XcbConnection> xcb;
    std::unique_ptr<XcbScreens> screens;
    int reports = 0;
    double scale = 1;
};

void XcbScreensTest::init()
{
    scale = QGuiApplication::primaryScreen()->devicePixelRatio();
    xcb = XcbConnection::open();
    screens = std::make_unique<XcbScreens>(xcb);
    QTRY_COMPARE_WITH_TIMEOUT(visibleFrame(), frame(), kPatience);
    // Remains of the last test must not be reported to this one.
    screens = std::make_unique<XcbScreens>(xcb);
    QCOMPARE(visibleFrame(), frame());
    reports = 0;
    screens->onChange = [this] { ++reports; };
}

void XcbScreensTest::a_screen_is_told_in_points()
{
    QCOMPARE(screens->all().size(), 1);
    QCOMPARE(screens->all().first().frame, QRectF(0, 0, 1280 / scale, 800 / scale));
    QCOMPARE(screens->all().first().scale, scale);
    QCOMPARE(screens->main(), std::optional(screens->all().first()));
}

void XcbScreensTest::the_pointer_is_told_in_points()
{
    FakeInput hand;
    hand.pointerMotion({200, 100});
    QTRY_COMPARE_WITH_TIMEOUT(screens->pointer().value_or(QPointF()), QPointF(200 / scale, 100 / scale), kPatience);
}

void XcbScreensTest::a_dock_reserves_space_while_it_is_there()
{
    {
        ForeignWindow dock(QRect(0, 0, 1280, kDepth), Qt::gray, ForeignWindow::Kind::Dock);
        dock.setStrut({0, 0, kDepth, 0, 0, 0, 0, 0, 0, 1279, 0, 0});
        dock.show();
        QTRY_COMPARE_WITH_TIMEOUT(visibleFrame(), frame().adjusted(0, kDepth / scale, 0, 0), kPatience);
        QTRY_VERIFY_WITH_TIMEOUT(reports > 0, kPatience);
        reports = 0;
    }
    QTRY_COMPARE_WITH_TIMEOUT(visibleFrame(), frame(), kPatience);
    QTRY_VERIFY_WITH_TIMEOUT(reports > 0, kPatience);
}

void XcbScreensTest::a_change_that_has_been_read_is_reported_all_the_same()
{
    // Reads the screens after each single event with which the window manager reports the dock.
    const auto reading = xcb->listen([this](const auto &) { screens->all(); });
    ForeignWindow dock(QRect(0, 0, 1280, kDepth), Qt::gray, ForeignWindow::Kind::Dock);
    dock.setStrut({0, 0, kDepth, 0, 0, 0, 0, 0, 0, 1279, 0, 0});
    dock.show();
    QTRY_VERIFY_WITH_TIMEOUT(reports > 0, kPatience);
    QCOMPARE(visibleFrame(), frame().adjusted(0, kDepth / scale, 0, 0));
}

void XcbScreensTest::a_dock_may_change_its_mind()
{
    ForeignWindow dock(QRect(1280 - kDepth, 0, kDepth, 800), Qt::gray, ForeignWindow::Kind::Dock);
    dock.show();
    QTRY_VERIFY_WITH_TIMEOUT(isListed(dock), kPatience);
    QCOMPARE(visibleFrame(), frame());
    dock.setStrut({0, kDepth, 0, 0, 0, 0, 0, 799, 0, 0, 0, 0});
    QTRY_COMPARE_WITH_TIMEOUT(visibleFrame(), frame().adjusted(0, 0, -kDepth / scale, 0), kPatience);
    dock.setStrut({0, 2 * kDepth, 0, 0, 0, 0, 0, 799, 0, 0, 0, 0});
    QTRY_COMPARE_WITH_TIMEOUT(visibleFrame(), frame().adjusted(0, 0, -2 * kDepth / scale, 0), kPatience);
    QTRY_VERIFY_WITH_TIMEOUT(reports >= 2, kPatience);
}

void XcbScreensTest::a_window_that_reserves_nothing_is_not_reported()
{
    ForeignWindow window(QRect(100, 100, 300, 200), Qt::green);
    window.show();
    QTRY_VERIFY_WITH_TIMEOUT(isListed(window), kPatience);
    // The next dock is the first change to report.
    ForeignWindow dock(QRect(0, 0, 1280, kDepth), Qt::gray, ForeignWindow::Kind::Dock);
    dock.setStrut({0, 0, kDepth, 0, 0, 0, 0, 0, 0, 1279, 0, 0});
    screens->onChange = [this] {
        ++reports;
        if (visibleFrame() == frame())
            QFAIL("Nothing had changed.");
    };
    dock.show();
    QTRY_VERIFY_WITH_TIMEOUT(reports > 0, kPatience);
    screens->onChange = nullptr;
}

void XcbScreensTest::without_a_connection_qt_answers()
{
    XcbScreens alone(nullptr);
    QCOMPARE(alone.all().size(), 1);
    QCOMPARE(alone.main()->frame, frame());
}

} // namespace

PARKLET_TEST(XcbScreensTest)
#include "XcbScreensTest.moc"
