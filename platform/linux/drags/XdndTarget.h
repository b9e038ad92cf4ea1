// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>

#include <xcb/xcb.h>

#include <functional>
#include <optional>

class XcbConnection;

// The version of the drag-and-drop protocol that Qt speaks.
constexpr quint32 kXdndVersion = 5;

// The window that takes a drop.
struct XdndTarget {
    xcb_window_t window = XCB_NONE;
    xcb_window_t receiver = XCB_NONE; // gets the messages in its stead; mostly the window itself
    quint32 version = 0;              // of the protocol that it speaks
};

// Who takes a drop at `position` (pixels on the root window), the windows that `ignored` names apart: as Qt sees it,
// the topmost window there that takes drops at all. Nothing where there is none. Some round trips.
std::optional<XdndTarget> xdndTargetAt(XcbConnection &connection, const QPoint &position,
                                       const std::function<bool(xcb_window_t)> &ignored);
