// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QWidget;

// How a floating panel presents itself to the desktop.
struct PanelStyle {
    QString role;            // the window role: "shelf" or "cursor-shelf"
    double cornerRadius = 0; // points; the window is cut to it where the desktop cannot blend the corners
};

// Windows that float above all others on every desktop, also over full-screen windows. They are in no task list and
// never activate their program, not even when clicked; on X11 they never have the focus, which is the same there. The
// compositor decides about their shadows and animations.
class FloatingPanels {
public:
    virtual ~FloatingPanels() = default;

    // Makes `window` such a panel. Call it once, before the window is first shown.
    virtual void make(QWidget &window, const PanelStyle &style) = 0;

    // Shows `window` above all others without giving it the focus.
    virtual void orderFront(QWidget &window) = 0;

    virtual void orderOut(QWidget &window) = 0;

    // Sets the opacity of the whole window, from 0 to 1. It has no effect where the desktop cannot blend.
    virtual void setAlpha(QWidget &window, double alpha);

    // Whether translucent pixels and window opacity have an effect. This can change while the program runs.
    virtual bool canBlend() const = 0;

    // Whether the desktop itself puts a dark translucent background behind a panel; the panel then draws none.
    virtual bool drawsBackground() const { return false; }
};
