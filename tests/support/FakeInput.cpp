// SPDX-License-Identifier: MIT
#include "FakeInput.h"

#include <xcb/xtest.h>

#include <xkbcommon/xkbcommon-keysyms.h>

FakeInput::FakeInput()
    : xcb(XcbConnection::open(nullptr))
{
    if (!xcb)
        qFatal("There is no X server to send input to.");
}

void FakeInput::pointerMotion(const QPoint &position)
{
    send(XCB_MOTION_NOTIFY, 0, position);
}

void FakeInput::pointerButtonPressed(quint8 button)
{
    send(XCB_BUTTON_PRESS, button);
}

void FakeInput::pointerButtonReleased(quint8 button)
{
    send(XCB_BUTTON_RELEASE, button);
}

void FakeInput::click(const QPoint &position)
{
    pointerMotion(position);
    pointerButtonPressed();
    pointerButtonReleased();
}

void FakeInput::keyPressed(quint32 symbol)
{
    send(XCB_KEY_PRESS, keyCode(symbol));
}

void FakeInput::keyReleased(quint32 symbol)
{
    send(XCB_KEY_RELEASE, keyCode(symbol));
}

void FakeInput::typeWithControl(quint32 symbol)
{
    keyPressed(XKB_KEY_Control_L);
    keyPressed(symbol);
    keyReleased(symbol);
    keyReleased(XKB_KEY_Control_L);
}

xcb_keycode_t FakeInput::keyCode(quint32 symbol)
{
    const xcb_setup_t *setup = xcb_get_setup(xcb->get());
    const int count = setup->max_keycode - setup->min_keycode + 1;
    const auto query = xcb_get_keyboard_mapping(xcb->get(), setup->min_keycode, static_cast<quint8>(count));
    const auto mapping = xcb->reply(xcb_get_keyboard_mapping_reply, query);
    if (!mapping)
        return 0;
    const xcb_keysym_t *symbols = xcb_get_keyboard_mapping_keysyms(mapping.get());
    for (int i = 0; i < count; ++i) {
        if (symbols[i * mapping->keysyms_per_keycode] == symbol)
            return static_cast<xcb_keycode_t>(setup->min_keycode + i);
    }
    return 0;
}

void FakeInput::send(quint8 type, quint8 detail, const QPoint &position)
{
    const auto cookie =
        xcb_test_fake_input_checked(xcb->get(), type, detail, XCB_CURRENT_TIME, xcb->root(),
                                    static_cast<qint16>(position.x()), static_cast<qint16>(position.y()), 0);
    if (!xcb->succeeded(cookie))
        qFatal("The X server takes no input from tests.");
}
