// SPDX-License-Identifier: MIT
#pragma once

#include "platform/KeyTap.h"

#include <QPointer>

class LayerPanel;
class QKeyEvent;

// Taps Ctrl+A while the pointer is over a panel: only then may the panel have the keyboard, and it gives it back at
// once. Other keys that are pressed meanwhile are lost.
class WaylandKeyTap : public KeyTap {
public:
    bool install(Handler tapHandler) override;
    void remove() override;

    // The pointer is over this panel, or over none (null).
    void pointerOver(LayerPanel *panel);

    // A key was pressed while a panel had the keyboard.
    bool keyPressed(QKeyEvent &event);

private:
    void update();

    Handler handler;
    QPointer<LayerPanel> hovered;
    QPointer<LayerPanel> holder; // has the keyboard
};
