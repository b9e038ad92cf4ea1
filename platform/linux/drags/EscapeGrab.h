// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/x11/XcbConnection.h"

#include <xcb/xcb_keysyms.h>

#include <functional>
#include <memory>
#include <vector>

// Grabs the Escape key while it exists, whichever window has the focus.
class EscapeGrab {
public:
    // Calls `onPressed` on the main thread. Never calls it when another program has already grabbed the key.
    EscapeGrab(std::shared_ptr<XcbConnection> connection, std::function<void()> onPressed);
    ~EscapeGrab();

    EscapeGrab(const EscapeGrab &) = delete;
    EscapeGrab &operator=(const EscapeGrab &) = delete;

private:
    std::shared_ptr<XcbConnection> connection;
    std::vector<xcb_keycode_t> keys;
    XcbConnection::Subscription subscription;
};
