// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/x11/XcbConnection.h"

#include <QColor>
#include <QRect>

// A window of another program, for the window manager and the program under test.
class ForeignWindow {
public:
    enum class Kind { Normal, FullScreen, Dock };

    ForeignWindow(const QRect &geometry, const QColor &color, Kind kind = Kind::Normal);
    ~ForeignWindow();

    void show();
    void hide();

    // Asks the window manager to make the window full-screen, or to end that.
    void setFullScreen(bool fullScreen);

    // Sets the twelve values of _NET_WM_STRUT_PARTIAL.
    void setStrut(const std::vector<quint32> &values);

    xcb_window_t id() const { return window; }

    // The number of presses of this key that the window has received.
    int keyPresses(xcb_keycode_t code) const;

    XcbConnection &connection() { return *xcb; }

private:
    void change(const char *property, xcb_atom_t type, const std::vector<quint32> &values);

    std::shared_ptr<XcbConnection> xcb;
    XcbConnection::Subscription subscription;
    std::vector<xcb_keycode_t> presses;
    xcb_window_t window;
};

// The state of the desktop, as every client sees it.
xcb_window_t activeWindow(XcbConnection &xcb);
xcb_window_t inputFocus(XcbConnection &xcb);
// Whether `window` has the focus and is the active window of the window manager.
bool isActive(XcbConnection &xcb, xcb_window_t window);
bool hasState(XcbConnection &xcb, xcb_window_t window, const char *state);

// The colour of a screen pixel, as the user sees it.
QColor screenColor(const QPoint &position);
