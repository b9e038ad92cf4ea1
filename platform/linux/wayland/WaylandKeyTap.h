// SPDX-License-Identifier: MIT
#pragma once

#include "platform/KeyTap.h"

#include <QPointer>

class LayerPanel;
class QKeyEvent;

// Receives Ctrl+A while the pointer is over a panel. Only then may the panel have the keyboard focus, and it returns
// the focus at once afterwards. Other keys pressed meanwhile are lost.
class WaylandKeyTap : public KeyTap {
public:
    bool install(Handler tapHandler) override;
    void remove() override;

    // The panel that the pointer is over; null for none.
    void pointerOver(LayerPanel *panel);

    // Handles a key press while a panel has the keyboard. True when the event is handled.
    bool keyPressed(QKeyEvent &event);

private:
    void update();

    Handler handler;
    QPointer<LayerPanel> hovered;
    QPointer<LayerPanel> holder; // the panel that has the keyboard
};
