// SPDX-License-Identifier: MIT
#include "platform/linux/x11/XcbFloatingPanels.h"
#include "tests/support/FakeInput.h"
#include "tests/support/ForeignWindow.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QPainter>
#include <QTest>

#include <xcb/shape.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int kPatience = 10'000; // milliseconds
constexpr int kRadius = 14;
const QRect kFrame(400, 200, 116, 164);

// A panel of one colour that accepts drops and counts clicks.
class Panel : public QWidget {
public:
    Panel() { setAcceptDrops(true); }

    int clicks = 0;
    int drawings = 0;

protected:
    void paintEvent(QPaintEvent *) override
    {
        ++drawings;
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::red);
        painter.drawRoundedRect(rect(), kRadius, kRadius);
    }
    void mousePressEvent(QMouseEvent *) override { ++clicks; }
};

class XcbFloatingPanelsTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void a_panel_is_made_and_drawn_once_before_it_is_needed();
    void a_panel_is_shown_above_and_takes_no_focus();
    void a_click_on_a_panel_takes_no_focus();
    void a_panel_stays_above_a_window_that_is_activated();
    void other_programs_read_what_a_panel_is();
    void a_panel_has_no_decorations();
    void the_opacity_is_told_to_the_compositor();
    void a_panel_that_is_to_fade_in_comes_up_transparent();
    void the_state_is_there_again_after_hiding();
    void a_panel_is_where_it_was_put_data();
    void a_panel_is_where_it_was_put();
    void a_panel_is_on_every_desktop();
    void a_panel_shows_over_a_full_screen_window();
    void a_panel_stays_over_a_window_that_becomes_full_screen();
    void a_panel_stays_over_a_full_screen_window_that_opens_later();
    void a_panel_does_not_change_sides_under_a_pressed_button();
    void a_panel_that_comes_up_in_a_drag_overrides_the_manager_until_it_goes();
    void a_panel_that_is_there_when_a_drag_begins_is_left_where_it_is();
    void without_a_compositor_the_corners_are_cut_out();
    void with_a_compositor_the_corners_are_blended();
    void a_compositor_that_comes_and_goes_is_noticed();
    void the_blurred_region_is_the_panel();
    void a_panel_may_be_deleted();

private:
    void showPanel()
    {
        panels->orderFront(*panel);
        QVERIFY(QTest::qWaitForWindowExposed(panel.get()));
        QVERIFY(isSeen());
    }

    // Whether the panel's colour appears on the screen. QTRY_COMPARE would read the colour twice, and a compositor may
    // first show the old picture of the panel, then the windows below it, and then the panel.
    static bool isSeen()
    {
        return QTest::qWaitFor([] { return screenColor(kFrame.center()) == QColor(Qt::red); }, kPatience);
    }

    bool comesToBeSeen()
    {
        roundTripThroughManager();
        return isSeen();
    }

    // After this, the window manager has handled all earlier requests, because it takes them in order.
    void roundTripThroughManager()
    {
        const xcb_window_t focus = inputFocus(*xcb);
        ForeignWindow probe(QRect(1200, 0, 10, 10), Qt::gray);
        probe.show();
        const auto managed = [&] {
            return !xcb->values(probe.id(), xcb->atom("WM_STATE"), xcb->atom("WM_STATE")).empty();
        };
        QTRY_VERIFY_WITH_TIMEOUT(managed(), kPatience);
        probe.hide();
        QTRY_VERIFY_WITH_TIMEOUT(!managed(), kPatience);
        QTRY_VERIFY_WITH_TIMEOUT(isActive(*xcb, focus), kPatience);
    }

    xcb_window_t window() const { return static_cast<xcb_window_t>(panel->internalWinId()); }

    QByteArray text(const char *property)
    {
        const auto reply =
            xcb->reply(xcb_get_property_reply,
                       xcb_get_property(xcb->get(), 0, window(), xcb->atom(property), XCB_ATOM_STRING, 0, 100));
        return {static_cast<const char *>(xcb_get_property_value(reply.get())),
                xcb_get_property_value_length(reply.get())};
    }

    // The opacity that the compositor is told, from 0 to 1; 1 also when none is set.
    double opacity()
    {
        const auto values = xcb->values(window(), xcb->atom("_NET_WM_WINDOW_OPACITY"), XCB_ATOM_CARDINAL);
        return values.empty() ? 1.0 : values.front() / double{0xffffffff};
    }

    QRect geometry()
    {
        const auto size = xcb->reply(xcb_get_geometry_reply, xcb_get_geometry(xcb->get(), window()));
        const auto origin = xcb->reply(xcb_translate_coordinates_reply,
                                       xcb_translate_coordinates(xcb->get(), window(), xcb->root(), 0, 0));
        return {origin->dst_x, origin->dst_y, size->width, size->height};
    }

    bool overridesManager()
    {
        const auto attributes =
            xcb->reply(xcb_get_window_attributes_reply, xcb_get_window_attributes(xcb->get(), window()));
        return attributes->override_redirect != 0 && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
    }

    bool isManaged()
    {
        const xcb_atom_t state = xcb->atom("WM_STATE");
        const auto values = xcb->values(window(), state, state);
        return !values.empty() && values.front() == 1;
    }

    QRegion shape()
    {
        const auto reply = xcb->reply(xcb_shape_get_rectangles_reply,
                                      xcb_shape_get_rectangles(xcb->get(), window(), XCB_SHAPE_SK_BOUNDING));
        QRegion region;
        const xcb_rectangle_t *parts = xcb_shape_get_rectangles_rectangles(reply.get());
        for (int i = 0; i < xcb_shape_get_rectangles_rectangles_length(reply.get()); ++i)
            region += QRect(parts[i].x, parts[i].y, parts[i].width, parts[i].height);
        return region;
    }

    bool compositorRuns()
    {
        const auto owner =
            xcb->reply(xcb_get_selection_owner_reply, xcb_get_selection_owner(xcb->get(), xcb->atom("_NET_WM_CM_S0")));
        return owner->owner != XCB_NONE;
    }

    void sendToRoot(const char *type, quint32 value)
    {
        xcb_client_message_event_t event = {};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = xcb->root();
        event.type = xcb->atom(type);
        event.data.data32[0] = value;
        QVERIFY(xcb->succeeded(xcb_send_event_checked(
            xcb->get(), 0, xcb->root(), XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
            reinterpret_cast<const char *>(&event))));
    }

    FakeInput hand;
    std::shared_ptr<XcbConnection> xcb;
    std::unique_ptr<ForeignWindow> foreign;
    std::unique_ptr<XcbFloatingPanels> panels;
    std::unique_ptr<Panel> panel;
};

void XcbFloatingPanelsTest::init()
{
    xcb = XcbConnection::open(nullptr);
    hand.pointerMotion({5, 5});
    panels = std::make_unique<XcbFloatingPanels>(XcbConnection::open());
    panel = std::make_unique<Panel>();
    panels->make(*panel, {u"shelf"_s, kRadius});
    panel->setGeometry(kFrame);
    foreign = std::make_unique<ForeignWindow>(QRect(300, 150, 400, 400), Qt::green);
    foreign->show();
    QTRY_VERIFY_WITH_TIMEOUT(isActive(*xcb, foreign->id()), kPatience);
    QTRY_COMPARE_WITH_TIMEOUT(screenColor({320, 170}), QColor(Qt::green), kPatience);
}

void XcbFloatingPanelsTest::cleanup()
{
    panels->orderOut(*panel);
    panel.reset();
    panels.reset();
    foreign.reset();
}

void XcbFloatingPanelsTest::a_panel_is_made_and_drawn_once_before_it_is_needed()
{
    QCOMPARE(panel->internalWinId(), WId(0));
    QTRY_VERIFY_WITH_TIMEOUT(panel->internalWinId() != 0, kPatience);
    QTRY_COMPARE_WITH_TIMEOUT(panel->drawings, 1, kPatience);
    QVERIFY(!panel->isVisible());
    QCOMPARE(screenColor(kFrame.center()), QColor(Qt::green));
    other_programs_read_what_a_panel_is();
}

void XcbFloatingPanelsTest::a_panel_is_shown_above_and_takes_no_focus()
{
    showPanel();
    QCOMPARE(inputFocus(*xcb), foreign->id());
    QCOMPARE(activeWindow(*xcb), foreign->id());
}

void XcbFloatingPanelsTest::a_click_on_a_panel_takes_no_focus()
{
    showPanel();
    hand.click(kFrame.center());
    QTRY_COMPARE_WITH_TIMEOUT(panel->clicks, 1, kPatience);
    roundTripThroughManager();
    QCOMPARE(inputFocus(*xcb), foreign->id());
    QCOMPARE(activeWindow(*xcb), foreign->id());
}

void XcbFloatingPanelsTest::a_panel_stays_above_a_window_that_is_activated()
{
    showPanel();
    ForeignWindow later(QRect(350, 150, 300, 300), Qt::blue);
    later.show();
    QTRY_COMPARE_WITH_TIMEOUT(screenColor({360, 170}), QColor(Qt::blue), kPatience);
    QCOMPARE(screenColor(kFrame.center()), QColor(Qt::red));
}

void XcbFloatingPanelsTest::other_programs_read_what_a_panel_is()
{
    showPanel();
    QCOMPARE(text("WM_WINDOW_ROLE"), QByteArray("shelf"));
    QCOMPARE(text("WM_CLASS"), QByteArray("parklet\0Parklet\0", 16));
    for (const char *state : {"_NET_WM_STATE_ABOVE", "_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER"})
        QTRY_VERIFY2_WITH_TIMEOUT(hasState(*xcb, window(), state), state, kPatience);
    const auto aware = xcb->values(window(), xcb->atom("XdndAware"), XCB_ATOM_ATOM);
    QCOMPARE(aware, std::vector<quint32>{5});
    const auto desktop = [this] { return xcb->values(window(), xcb->atom("_NET_WM_DESKTOP"), XCB_ATOM_CARDINAL); };
    QTRY_COMPARE_WITH_TIMEOUT(desktop(), std::vector<quint32>{0xffffffff}, kPatience);
}

void XcbFloatingPanelsTest::a_panel_has_no_decorations()
{
    showPanel();
    const auto extents = [this] { return xcb->values(window(), xcb->atom("_NET_FRAME_EXTENTS"), XCB_ATOM_CARDINAL); };
    QTRY_COMPARE_WITH_TIMEOUT(extents(), std::vector<quint32>(4, 0), kPatience);
    const xcb_atom_t motif = xcb->atom("_MOTIF_WM_HINTS");
    const std::vector<quint32> hints = xcb->values(window(), motif, motif);
    QVERIFY(hints.size() >= 3);
    QVERIFY(hints[0] & 2); // the field for decorations is set
    QCOMPARE(hints[2], 0u);
}

void XcbFloatingPanelsTest::the_opacity_is_told_to_the_compositor()
{
    showPanel();
    panels->setAlpha(*panel, 0.5);
    QTRY_VERIFY_WITH_TIMEOUT(std::abs(opacity() - 0.5) < 0.001, kPatience);
    panels->setAlpha(*panel, 1.0);
    QTRY_VERIFY_WITH_TIMEOUT(opacity() > 0.999, kPatience);
}

void XcbFloatingPanelsTest::a_panel_that_is_to_fade_in_comes_up_transparent()
{
    panels->setAlpha(*panel, 0);
    panels->orderFront(*panel);
    QVERIFY(QTest::qWaitForWindowExposed(panel.get()));
    QCOMPARE(opacity(), 0.0);
    // The same after it is shown again.
    panels->orderOut(*panel);
    panels->setAlpha(*panel, 1.0);
    panels->setAlpha(*panel, 0);
    panels->orderFront(*panel);
    QVERIFY(QTest::qWaitForWindowExposed(panel.get()));
    QCOMPARE(opacity(), 0.0);
}

void XcbFloatingPanelsTest::the_state_is_there_again_after_hiding()
{
    showPanel();
    panels->orderOut(*panel);
    QTRY_COMPARE_WITH_TIMEOUT(screenColor(kFrame.center()), QColor(Qt::green), kPatience);
    other_programs_read_what_a_panel_is();
}

void XcbFloatingPanelsTest::a_panel_is_where_it_was_put_data()
{
    QTest::addColumn<QRect>("frame");
    QTest::newRow("inside") << kFrame;
    QTest::newRow("at the right edge") << QRect(1280 - 4 - 116, 318, 116, 164);
    QTest::newRow("in the corner") << QRect(0, 0, 116, 164);
    QTest::newRow("reaching below the screen") << QRect(1160, 700, 116, 792);
    QTest::newRow("reaching off the left edge") << QRect(-50, 300, 116, 164);
}

void XcbFloatingPanelsTest::a_panel_is_where_it_was_put()
{
    QFETCH(QRect, frame);
    panel->setGeometry(frame);
    panels->orderFront(*panel);
    QVERIFY(QTest::qWaitForWindowExposed(panel.get()));
    roundTripThroughManager();
    QTRY_COMPARE_WITH_TIMEOUT(geometry(), frame, kPatience);
    QCOMPARE(panel->geometry(), frame);
    // The same after a move while it is visible.
    panel->setGeometry(frame.adjusted(20, 10, 20, 50));
    QTRY_COMPARE_WITH_TIMEOUT(geometry(), frame.adjusted(20, 10, 20, 50), kPatience);
    // The same after it is shown again.
    panels->orderOut(*panel);
    panel->setGeometry(frame);
    panels->orderFront(*panel);
    roundTripThroughManager();
    QTRY_COMPARE_WITH_TIMEOUT(geometry(), frame, kPatience);
}

void XcbFloatingPanelsTest::a_panel_is_on_every_desktop()
{
    showPanel();
    sendToRoot("_NET_NUMBER_OF_DESKTOPS", 2);
    sendToRoot("_NET_CURRENT_DESKTOP", 1);
    QTRY_VERIFY_WITH_TIMEOUT(screenColor({320, 170}) != QColor(Qt::green), kPatience);
    QCOMPARE(screenColor(kFrame.center()), QColor(Qt::red));
    // The same for a panel that is shown there for the first time.
    panels->orderOut(*panel);
    QTRY_VERIFY_WITH_TIMEOUT(screenColor(kFrame.center()) != QColor(Qt::red), kPatience);
    panels->orderFront(*panel);
    QVERIFY(isSeen());
    sendToRoot("_NET_CURRENT_DESKTOP", 0);
    QTRY_COMPARE_WITH_TIMEOUT(screenColor({320, 170}), QColor(Qt::green), kPatience);
    QCOMPARE(screenColor(kFrame.center()), QColor(Qt::red));
}

void XcbFloatingPanelsTest::a_panel_shows_over_a_full_screen_window()
{
    foreign->setFullScreen(true);
    QTRY_COMPARE_WITH_TIMEOUT(screenColor({5, 795}), QColor(Qt::green), kPatience);
    showPanel();
    QCOMPARE(inputFocus(*xcb), foreign->id());
    hand.click(kFrame.center());
    QTRY_COMPARE_WITH_TIMEOUT(panel->clicks, 1, kPatience);
    QCOMPARE(inputFocus(*xcb), foreign->id());
    QCOMPARE(xcb->values(window(), xcb->atom("XdndAware"), XCB_ATOM_ATOM), std::vector<quint32>{5});
    QCOMPARE(geometry(), kFrame);
}

void XcbFloatingPanelsTest::a_panel_stays_over_a_window_that_becomes_full_screen()
{
    showPanel();
    for (int round = 0; round < 3; ++round) {
        foreign->setFullScreen(true);
        QTRY_COMPARE_WITH_TIMEOUT(screenColor({5, 795}), QColor(Qt::green), kPatience);
        QTRY_VERIFY_WITH_TIMEOUT(overridesManager(), kPatience);
        QVERIFY(comesToBeSeen());
        QVERIFY(panel->isVisible());
        QCOMPARE(inputFocus(*xcb), foreign->id());
        QCOMPARE(geometry(), kFrame);

        foreign->setFullScreen(false);
        QTRY_VERIFY_WITH_TIMEOUT(!overridesManager(), kPatience);
        QTRY_VERIFY_WITH_TIMEOUT(isManaged(), kPatience);
        QVERIFY(comesToBeSeen());
        QTRY_VERIFY_WITH_TIMEOUT(hasState(*xcb, window(), "_NET_WM_STATE_ABOVE"), kPatience);
        QVERIFY(hasState(*xcb, window(), "_NET_WM_STATE_SKIP_TASKBAR"));
        QCOMPARE(inputFocus(*xcb), foreign->id());
        QCOMPARE(geometry(), kFrame);
    }
}

void XcbFloatingPanelsTest::a_panel_stays_over_a_full_screen_window_that_opens_later()
{
    showPanel();
    ForeignWindow film(QRect(0, 0, 1280, 800), Qt::blue, ForeignWindow::Kind::FullScreen);
    film.show();
    QTRY_VERIFY_WITH_TIMEOUT(overridesManager(), kPatience);
    QTRY_COMPARE_WITH_TIMEOUT(screenColor({5, 795}), QColor(Qt::blue), kPatience);
    QVERIFY(isSeen());
    // A panel that is hidden during the change stays hidden.
    panels->orderOut(*panel);
    QTRY_COMPARE_WITH_TIMEOUT(screenColor(kFrame.center()), QColor(Qt::blue), kPatience);
    roundTripThroughManager();
    QVERIFY(!panel->isVisible());
    QCOMPARE(screenColor(kFrame.center()), QColor(Qt::blue));
}

void XcbFloatingPanelsTest::a_panel_does_not_change_sides_under_a_pressed_button()
{
    showPanel();
    hand.pointerMotion(kFrame.center());
    hand.pointerButtonPressed();
    foreign->setFullScreen(true);
    QTRY_COMPARE_WITH_TIMEOUT(screenColor({5, 795}), QColor(Qt::green), kPatience);
    roundTripThroughManager();
    QVERIFY(!overridesManager());
    hand.pointerButtonReleased();
    // The panel changes when the button is released.
    QTRY_VERIFY_WITH_TIMEOUT(overridesManager(), kPatience);
    QVERIFY(comesToBeSeen());
}

void XcbFloatingPanelsTest::a_panel_that_comes_up_in_a_drag_overrides_the_manager_until_it_goes()
{
    hand.pointerMotion({320, 170});
    hand.pointerButtonPressed();
    showPanel();
    QVERIFY(overridesManager());
    QCOMPARE(geometry(), kFrame);
    QCOMPARE(inputFocus(*xcb), foreign->id());
    panels->orderFront(*panel);
    hand.pointerButtonReleased();
    // It stays above a window that is activated later, and does not flicker.
    ForeignWindow later(QRect(350, 150, 300, 300), Qt::blue);
    later.show();
    QTRY_COMPARE_WITH_TIMEOUT(screenColor({360, 170}), QColor(Qt::blue), kPatience);
    QVERIFY(isSeen());
    roundTripThroughManager();
    QVERIFY(overridesManager());
    panels->orderFront(*panel);
    roundTripThroughManager();
    QVERIFY(overridesManager());

    panels->orderOut(*panel);
    showPanel();
    QVERIFY(!overridesManager());
    QTRY_VERIFY_WITH_TIMEOUT(isManaged(), kPatience);
}

void XcbFloatingPanelsTest::a_panel_that_is_there_when_a_drag_begins_is_left_where_it_is()
{
    showPanel();
    hand.pointerMotion({320, 170});
    hand.pointerButtonPressed();
    panels->orderFront(*panel);
    roundTripThroughManager();
    QVERIFY(!overridesManager());
    hand.pointerButtonReleased();
}

void XcbFloatingPanelsTest::without_a_compositor_the_corners_are_cut_out()
{
    if (compositorRuns())
        QSKIP("A compositor runs here.");
    QVERIFY(!panels->canBlend());
    showPanel();
    QCOMPARE(screenColor(kFrame.topLeft()), QColor(Qt::green));
    QCOMPARE(shape(), roundedRegion(kFrame.size(), kRadius));
    panel->resize(300, 100);
    QTRY_COMPARE_WITH_TIMEOUT(shape(), roundedRegion({300, 100}, kRadius), kPatience);
}

void XcbFloatingPanelsTest::with_a_compositor_the_corners_are_blended()
{
    if (!compositorRuns())
        QSKIP("No compositor runs here.");
    QVERIFY(panels->canBlend());
    showPanel();
    QCOMPARE(screenColor(kFrame.topLeft()), QColor(Qt::green));
    QCOMPARE(shape(), QRegion(QRect(QPoint(), kFrame.size())));
}

void XcbFloatingPanelsTest::a_compositor_that_comes_and_goes_is_noticed()
{
    if (compositorRuns())
        QSKIP("A compositor runs here.");
    showPanel();
    const xcb_atom_t selection = xcb->atom("_NET_WM_CM_S0");
    const xcb_window_t owner = xcb_generate_id(xcb->get());
    xcb_create_window(xcb->get(), 0, owner, xcb->root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, 0, 0, nullptr);
    QVERIFY(xcb->succeeded(xcb_set_selection_owner_checked(xcb->get(), owner, selection, XCB_CURRENT_TIME)));
    QTRY_VERIFY_WITH_TIMEOUT(panels->canBlend(), kPatience);
    QTRY_COMPARE_WITH_TIMEOUT(shape(), QRegion(QRect(QPoint(), kFrame.size())), kPatience);
    QVERIFY(xcb->succeeded(xcb_destroy_window_checked(xcb->get(), owner)));
    QTRY_VERIFY_WITH_TIMEOUT(!panels->canBlend(), kPatience);
    QTRY_COMPARE_WITH_TIMEOUT(shape(), roundedRegion(kFrame.size(), kRadius), kPatience);
}

void XcbFloatingPanelsTest::the_blurred_region_is_the_panel()
{
    showPanel();
    const auto values = xcb->values(window(), xcb->atom("_KDE_NET_WM_BLUR_BEHIND_REGION"), XCB_ATOM_CARDINAL);
    QRegion blurred;
    for (std::size_t i = 0; i + 3 < values.size(); i += 4)
        blurred += QRect(int(values[i]), int(values[i + 1]), int(values[i + 2]), int(values[i + 3]));
    QCOMPARE(blurred, roundedRegion(kFrame.size(), kRadius));
}

void XcbFloatingPanelsTest::a_panel_may_be_deleted()
{
    showPanel();
    panel.reset();
    ForeignWindow film(QRect(0, 0, 1280, 800), Qt::blue, ForeignWindow::Kind::FullScreen);
    film.show();
    QTRY_COMPARE_WITH_TIMEOUT(screenColor({5, 795}), QColor(Qt::blue), kPatience);
    panel = std::make_unique<Panel>();
    panels->make(*panel, {u"shelf"_s, kRadius});
    panel->setGeometry(kFrame);
    showPanel();
}

} // namespace

PARKLET_TEST(XcbFloatingPanelsTest)
#include "XcbFloatingPanelsTest.moc"
