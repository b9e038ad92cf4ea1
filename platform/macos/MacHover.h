// SPDX-License-Identifier: MIT
#pragma once

#include "platform/common/HoverEvents.h"

#include <memory>

Q_FORWARD_DECLARE_OBJC_CLASS(NSView);

// Hands the pointer over a window to Qt while another application is active. Qt's own view follows it all the time, but
// keeps to itself what it sees then, and a panel is made to be used just then.
class MacHover {
public:
    explicit MacHover(QWidget &hovered);
    ~MacHover();

    // Follows the pointer over `view`, the window's, and over no other any more.
    void follow(NSView *view);

    // Tells the window that the pointer is not over it any more, if that is what it has been told.
    void leave() { events.leave(); }

    // Qt has told the window something of its own.
    void forget() { events.forget(); }

private:
    struct Area;

    HoverEvents events;
    std::unique_ptr<Area> area;
};
