// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/x11/XcbConnection.h"

#include <memory>
#include <optional>

// A Wayland compositor, as it stands on its X server for the native programs of its session: in their drags it owns
// the selection, and in drags of X programs it is the destination.
class DragBridge {
public:
    explicit DragBridge(std::shared_ptr<XcbConnection> connection);

    // Whether a window belongs to that compositor; never on a server that is not one of Wayland's. Some round trips.
    bool owns(xcb_window_t window);

    // Takes a server for one of Wayland's, or not, whatever it says.
    void assume(bool isXwayland) { onXwayland = isXwayland; }

private:
    bool isOnXwayland();

    std::shared_ptr<XcbConnection> connection;
    std::optional<bool> onXwayland; // once it is known
};
