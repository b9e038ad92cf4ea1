// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/WaylandKeyTap.h"

#include "platform/linux/wayland/LayerPanel.h"

#include <QKeyEvent>

#include <utility>

bool WaylandKeyTap::install(Handler tapHandler)
{
    handler = std::move(tapHandler);
    update();
    return true;
}

void WaylandKeyTap::remove()
{
    handler = nullptr;
    update();
}

void WaylandKeyTap::pointerOver(LayerPanel *panel)
{
    hovered = panel;
    update();
}

bool WaylandKeyTap::keyPressed(QKeyEvent &event)
{
    constexpr Qt::KeyboardModifiers kReported =
        Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier | Qt::MetaModifier;
    return handler && handler(Qt::Key(event.key()), event.modifiers() & kReported);
}

void WaylandKeyTap::update()
{
    LayerPanel *wanted = handler ? hovered.data() : nullptr;
    if (holder && holder != wanted)
        holder->setKeyboard(false);
    holder = wanted;
    if (holder)
        holder->setKeyboard(true);
}
