// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/x11/XcbConnection.h"

#include <memory>
#include <optional>

// The Wayland compositor behind an X server (XWayland). During a drag of a native program the compositor owns the
// selection XdndSelection; during a drag of an X program it is the destination.
class DragBridge {
public:
    explicit DragBridge(std::shared_ptr<XcbConnection> connection);

    // Whether a window belongs to that compositor. Always false on a server that is not XWayland. Takes a few round
    // trips to the server.
    bool owns(xcb_window_t window);

    // For tests: treats the server as XWayland or not, whatever it really is.
    void assume(bool isXwayland) { onXwayland = isXwayland; }

private:
    bool isOnXwayland();

    std::shared_ptr<XcbConnection> connection;
    std::optional<bool> onXwayland; // empty until it is known
};
