// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QWidget>

// Tells a window about the pointer over it when Qt does not. A handler may delete the window, and this object with it.
class HoverEvents {
public:
    explicit HoverEvents(QWidget &hovered);

    // The pointer is over the window, at its current position.
    void move();

    // The pointer has left the window. Does nothing unless the window was told that the pointer is over it.
    void leave();

    // Call this when Qt itself has sent the window such an event.
    void forget() { isInside = false; }

private:
    const QPointer<QWidget> window;
    bool isInside = false;
};
