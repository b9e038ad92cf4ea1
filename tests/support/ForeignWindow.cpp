// SPDX-License-Identifier: MIT
#include "ForeignWindow.h"

#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QScreen>

#include <algorithm>
#include <array>

namespace {

constexpr quint32 kRequestRemove = 0;
constexpr quint32 kRequestAdd = 1;

} // namespace

ForeignWindow::ForeignWindow(const QRect &geometry, const QColor &color, Kind kind)
    : xcb(XcbConnection::open(nullptr))
    , window(xcb_generate_id(xcb->get()))
{
    const std::array<quint32, 2> values = {color.rgb() & 0xffffff,
                                           XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    xcb_create_window(xcb->get(), XCB_COPY_FROM_PARENT, window, xcb->root(), static_cast<qint16>(geometry.x()),
                      static_cast<qint16>(geometry.y()), static_cast<quint16>(geometry.width()),
                      static_cast<quint16>(geometry.height()), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values.data());
    // The hints say that the user chose position and size, and that the window takes the focus.
    std::vector<quint32> normalHints(18);
    normalHints[0] = 1 | 2;
    change("WM_NORMAL_HINTS", XCB_ATOM_WM_SIZE_HINTS, normalHints);
    std::vector<quint32> hints(9);
    hints[0] = hints[1] = 1;
    change("WM_HINTS", XCB_ATOM_WM_HINTS, hints);
    // Without decorations the window stays at its place.
    change("_MOTIF_WM_HINTS", xcb->atom("_MOTIF_WM_HINTS"), {2, 0, 0, 0, 0});
    if (kind == Kind::FullScreen)
        change("_NET_WM_STATE", XCB_ATOM_ATOM, {xcb->atom("_NET_WM_STATE_FULLSCREEN")});
    if (kind == Kind::Dock)
        change("_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM, {xcb->atom("_NET_WM_WINDOW_TYPE_DOCK")});
    subscription = xcb->listen([this](const xcb_generic_event_t &event) {
        if (eventType(event) == XCB_KEY_PRESS)
            presses.push_back(reinterpret_cast<const xcb_key_press_event_t &>(event).detail);
    });
}

ForeignWindow::~ForeignWindow()
{
    xcb->succeeded(xcb_destroy_window_checked(xcb->get(), window));
}

void ForeignWindow::show()
{
    xcb->succeeded(xcb_map_window_checked(xcb->get(), window));
}

void ForeignWindow::hide()
{
    xcb->succeeded(xcb_unmap_window_checked(xcb->get(), window));
}

void ForeignWindow::setFullScreen(bool fullScreen)
{
    xcb_client_message_event_t event = {};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = xcb->atom("_NET_WM_STATE");
    event.data.data32[0] = fullScreen ? kRequestAdd : kRequestRemove;
    event.data.data32[1] = xcb->atom("_NET_WM_STATE_FULLSCREEN");
    event.data.data32[3] = 1;
    xcb->succeeded(xcb_send_event_checked(xcb->get(), 0, xcb->root(),
                                          XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                                          reinterpret_cast<const char *>(&event)));
}

void ForeignWindow::setStrut(const std::vector<quint32> &values)
{
    change("_NET_WM_STRUT_PARTIAL", XCB_ATOM_CARDINAL, values);
}

int ForeignWindow::keyPresses(xcb_keycode_t code) const
{
    return static_cast<int>(std::count(presses.begin(), presses.end(), code));
}

void ForeignWindow::change(const char *property, xcb_atom_t type, const std::vector<quint32> &values)
{
    xcb->succeeded(xcb_change_property_checked(xcb->get(), XCB_PROP_MODE_REPLACE, window, xcb->atom(property), type, 32,
                                               static_cast<quint32>(values.size()), values.data()));
}

xcb_window_t activeWindow(XcbConnection &xcb)
{
    const auto values = xcb.values(xcb.root(), xcb.atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW);
    return values.empty() ? XCB_NONE : values.front();
}

xcb_window_t inputFocus(XcbConnection &xcb)
{
    const auto focus = xcb.reply(xcb_get_input_focus_reply, xcb_get_input_focus(xcb.get()));
    return focus ? focus->focus : XCB_NONE;
}

bool isActive(XcbConnection &xcb, xcb_window_t window)
{
    return inputFocus(xcb) == window && activeWindow(xcb) == window;
}

bool hasState(XcbConnection &xcb, xcb_window_t window, const char *state)
{
    const auto values = xcb.values(window, xcb.atom("_NET_WM_STATE"), XCB_ATOM_ATOM);
    return std::find(values.begin(), values.end(), xcb.atom(state)) != values.end();
}

QColor screenColor(const QPoint &position)
{
    return QGuiApplication::primaryScreen()->grabWindow(0, position.x(), position.y(), 1, 1).toImage().pixelColor(0, 0);
}
