// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/x11/XcbConnection.h"

#include <QColor>
#include <QRect>

// A window of another program, as the window manager and the program under test see it.
class ForeignWindow {
public:
    enum class Kind { Normal, FullScreen, Dock };

    ForeignWindow(const QRect &geometry, const QColor &color, Kind kind = Kind::Normal);
    ~ForeignWindow();

    void show();
    void hide();

    // Asks the window manager for full screen, or to leave it.
    void setFullScreen(bool fullScreen);

    // The twelve values of _NET_WM_STRUT_PARTIAL.
    void setStrut(const std::vector<quint32> &values);

    xcb_window_t id() const { return window; }

    // How many presses of that key the window has got.
    int keyPresses(xcb_keycode_t code) const;

    XcbConnection &connection() { return *xcb; }

private:
    void change(const char *property, xcb_atom_t type, const std::vector<quint32> &values);

    std::shared_ptr<XcbConnection> xcb;
    XcbConnection::Subscription subscription;
    std::vector<xcb_keycode_t> presses;
    xcb_window_t window;
};

// What any client sees of the desktop.
xcb_window_t activeWindow(XcbConnection &xcb);
xcb_window_t inputFocus(XcbConnection &xcb);
// Whether `window` has the focus and the window manager says so.
bool isActive(XcbConnection &xcb, xcb_window_t window);
bool hasState(XcbConnection &xcb, xcb_window_t window, const char *state);

// Pixels of the screen as the user sees it.
QColor screenColor(const QPoint &position);
