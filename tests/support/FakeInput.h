// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/x11/XcbConnection.h"

#include <QPoint>

// A hand on the mouse and keyboard of the X server that a test runs on. Each call has happened when it returns.
class FakeInput {
public:
    FakeInput();

    // In pixels, from the top left of the root window.
    void pointerMotion(const QPoint &position);
    void pointerButtonPressed(quint8 button = 1);
    void pointerButtonReleased(quint8 button = 1);
    void click(const QPoint &position);

    // The key that types that symbol without a modifier.
    void keyPressed(quint32 symbol);
    void keyReleased(quint32 symbol);

    // Presses and releases the key while Control is held.
    void typeWithControl(quint32 symbol);

    // Zero when no key types it.
    xcb_keycode_t keyCode(quint32 symbol);

private:
    void send(quint8 type, quint8 detail, const QPoint &position = {});

    std::shared_ptr<XcbConnection> xcb;
};
