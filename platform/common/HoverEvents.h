// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QWidget>

// Tells a window of the pointer over it where Qt does not by itself. A handler may delete the window, and this with it.
class HoverEvents {
public:
    explicit HoverEvents(QWidget &hovered);

    // The pointer is over the window, wherever it is now.
    void move();

    // The pointer is not over the window any more. Says nothing unless the window has been told that it was.
    void leave();

    // Qt has told the window something of its own.
    void forget() { isInside = false; }

private:
    const QPointer<QWidget> window;
    bool isInside = false;
};
