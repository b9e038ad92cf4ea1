// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QWidget;

// How a floating panel presents itself to the desktop.
struct PanelStyle {
    QString role;            // the window role: "shelf" or "cursor-shelf"
    double cornerRadius = 0; // points; the panel's outline where the desktop cannot blend its corners
};

// Windows that float above all others on every desktop, over full-screen windows too, are in no task list, and never
// make their program the active one, not even when clicked. Where that is the same as having the focus, they never
// have it. Where shadows, and animations of windows that come and go, are the compositor's business, so are theirs.
class FloatingPanels {
public:
    virtual ~FloatingPanels() = default;

    // Gives `window` these properties for good. Call it once, before the window is first shown.
    virtual void make(QWidget &window, const PanelStyle &style) = 0;

    // Shows `window` above all others without giving it the focus.
    virtual void orderFront(QWidget &window) = 0;

    virtual void orderOut(QWidget &window) = 0;

    // The opacity of the whole window, from 0 to 1. Where the desktop cannot blend it shows opaque all the same.
    virtual void setAlpha(QWidget &window, double alpha);

    // Whether translucent pixels and window opacity show what is behind. It can change while the program runs.
    virtual bool canBlend() const = 0;

    // Whether the desktop itself puts a dark translucent background behind a panel; the panel then draws none.
    virtual bool drawsBackground() const { return false; }
};
