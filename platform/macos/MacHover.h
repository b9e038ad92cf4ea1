// SPDX-License-Identifier: MIT
#pragma once

#include "platform/common/HoverEvents.h"

#include <memory>

Q_FORWARD_DECLARE_OBJC_CLASS(NSView);

// Tells Qt about the pointer over a window while another application is active. Qt's view receives the pointer then
// too, but ignores it, although a panel is mostly used at that time.
class MacHover {
public:
    explicit MacHover(QWidget &hovered);
    ~MacHover();

    // Follows the pointer over the window's `view`, and no other view.
    void follow(NSView *view);

    // Tells the window that the pointer has left, if it was told that the pointer is over it.
    void leave() { events.leave(); }

    // Call this when Qt itself has sent the window such an event.
    void forget() { events.forget(); }

private:
    struct Area;

    HoverEvents events;
    std::unique_ptr<Area> area;
};
