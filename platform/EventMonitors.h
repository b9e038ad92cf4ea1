// SPDX-License-Identifier: MIT
#pragma once

#include <QRectF>

#include <functional>
#include <optional>
#include <utility>

// Left-mouse events that a global monitor can follow.
enum EventMask : quint32 {
    LeftMouseUp = 1u << 2,
    LeftMouseDragged = 1u << 6,
};

// Global monitors of the mouse. They receive the events of other applications without changing them, but not those of a
// drag that starts in a window of this program.
class EventMonitors {
public:
    using Token = quint64;

    virtual ~EventMonitors() = default;

    // Calls `handler` on the main thread for each event of `mask`. Nothing when the platform refuses.
    virtual std::optional<Token> add(quint32 mask, std::function<void()> handler) = 0;

    // The same for LeftMouseDragged and a handler that checks whether the pointer is near `frame`, in points of Qt
    // (origin at the top left). If the desktop does not report the pointer during a drag, the handler is called at
    // least when the pointer reaches the edge of the screen beside the frame, and its position is known then.
    virtual std::optional<Token> addNear(const QRectF &, std::function<void()> handler)
    {
        return add(LeftMouseDragged, std::move(handler));
    }

    // Ends a monitor. It is not called again, even if a handler removes it. Ignores an unknown token.
    virtual void remove(Token token) = 0;
};
