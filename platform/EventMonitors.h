// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <functional>
#include <optional>

// Left-mouse events that a global monitor can follow.
enum EventMask : quint32 {
    LeftMouseUp = 1u << 2,
    LeftMouseDragged = 1u << 6,
};

// Global monitors of the mouse: they see what goes to other applications, and change nothing. A drag that starts in
// one of our own windows is not seen.
class EventMonitors {
public:
    using Token = quint64;

    virtual ~EventMonitors() = default;

    // Calls `handler` on the main thread for each event of `mask`. Nothing when the platform refuses.
    virtual std::optional<Token> add(quint32 mask, std::function<void()> handler) = 0;

    // Ends a monitor; it is not called again, also when removed from within a handler. An unknown token is ignored.
    virtual void remove(Token token) = 0;
};
