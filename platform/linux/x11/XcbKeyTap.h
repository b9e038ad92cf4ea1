// SPDX-License-Identifier: MIT
#pragma once

#include "platform/KeyTap.h"
#include "platform/linux/x11/XcbConnection.h"

#include <QTimer>

#include <memory>
#include <vector>

#include <xkbcommon/xkbcommon.h>

// Taps Ctrl+A with passive grabs on the root window, because X grabs single keys. Every press that it gets is
// swallowed.
class XcbKeyTap : public KeyTap {
public:
    // With a null connection every installation is refused.
    explicit XcbKeyTap(std::shared_ptr<XcbConnection> connection);
    ~XcbKeyTap() override;

    bool install(Handler tapHandler) override;
    void remove() override;

private:
    struct Grab {
        xcb_keycode_t code;
        quint16 modifiers;
    };

    bool grab();
    void ungrab();
    void selectKeyboardEvents(bool selected);
    void handle(const xcb_generic_event_t &event);

    std::shared_ptr<XcbConnection> xcb;
    XcbConnection::Subscription subscription;
    Handler handler;
    std::vector<Grab> grabs;
    quint16 locks = 0; // modifier bits of the lock keys
    quint8 keyboardEvent = 0;
    QTimer regrab; // debounces: a layout change sends many events
};

// The key codes to grab for "a": the keys that type it in the current layout, or else in the first layout that has a
// Latin "a", or else the key at its usual place. Empty when there is none.
std::vector<xcb_keycode_t> keyCodesOfA(xkb_keymap *keymap, xkb_layout_index_t group);

// The modifier bits that the lock keys set, given the key codes of each of the eight modifiers in turn.
quint16 lockModifiers(xkb_keymap *keymap, const std::vector<std::vector<xcb_keycode_t>> &modifierKeys);
