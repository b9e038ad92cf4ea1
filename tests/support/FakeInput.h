// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/x11/XcbConnection.h"

#include <QPoint>

// Controls the mouse and keyboard of the test's X server. Each call returns after the server has handled it.
class FakeInput {
public:
    FakeInput();

    // `position` is in pixels from the top left of the root window.
    void pointerMotion(const QPoint &position);
    void pointerButtonPressed(quint8 button = 1);
    void pointerButtonReleased(quint8 button = 1);
    void click(const QPoint &position);

    // Presses the key that types this symbol without a modifier.
    void keyPressed(quint32 symbol);
    void keyReleased(quint32 symbol);

    // Presses and releases the key while Control is held.
    void typeWithControl(quint32 symbol);

    // Returns 0 when no key types it.
    xcb_keycode_t keyCode(quint32 symbol);

private:
    void send(quint8 type, quint8 detail, const QPoint &position = {});

    std::shared_ptr<XcbConnection> xcb;
};
