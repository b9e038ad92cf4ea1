// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>

#include <xcb/xcb.h>

#include <functional>
#include <optional>

class XcbConnection;

// The version of the XDND protocol that Qt speaks.
constexpr quint32 kXdndVersion = 5;

// The window that accepts a drop.
struct XdndTarget {
    xcb_window_t window = XCB_NONE;
    xcb_window_t receiver = XCB_NONE; // receives the messages: the window itself, or its proxy
    quint32 version = 0;              // of XDND that it speaks
};

// The topmost window that accepts drops at `position` (pixels on the root window, origin at the top left), found as Qt
// finds it and without the windows in `ignored`. Nothing when there is none. Takes a few round trips to the server.
std::optional<XdndTarget> xdndTargetAt(XcbConnection &connection, const QPoint &position,
                                       const std::function<bool(xcb_window_t)> &ignored);
