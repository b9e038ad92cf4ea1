// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/x11/XcbConnection.h"

#include <xcb/xcb_keysyms.h>

#include <functional>
#include <memory>
#include <vector>

// Takes the Escape key from whichever window has the focus, as long as it lives.
class EscapeGrab {
public:
    // `onPressed` runs on the main loop. Where another program holds the key already, it never does.
    EscapeGrab(std::shared_ptr<XcbConnection> connection, std::function<void()> onPressed);
    ~EscapeGrab();

    EscapeGrab(const EscapeGrab &) = delete;
    EscapeGrab &operator=(const EscapeGrab &) = delete;

private:
    std::shared_ptr<XcbConnection> connection;
    std::vector<xcb_keycode_t> keys;
    XcbConnection::Subscription subscription;
};
