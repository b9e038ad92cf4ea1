// SPDX-License-Identifier: MIT
#pragma once

#include "platform/KeyTap.h"
#include "platform/linux/x11/XcbConnection.h"

#include <QTimer>

#include <memory>
#include <vector>

#include <xkbcommon/xkbcommon.h>

// Taps Ctrl+A with a passive grab on the root window: an X server lends out single keys, not the keyboard. Any press it
// hears is swallowed.
class XcbKeyTap : public KeyTap {
public:
    // A null connection is a platform that refuses.
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
    QTimer regrab; // a change of layout comes as a burst of events
};

// The key codes to tap for "a": the keys that type it in the layout's current group; where that has no Latin "a", those
// of the first group that has; else the key at its usual place on the keyboard. Empty when there is none of them.
std::vector<xcb_keycode_t> keyCodesOfA(xkb_keymap *keymap, xkb_layout_index_t group);

// The modifier bits that the lock keys set, given the key codes of each of the eight modifiers in turn.
quint16 lockModifiers(xkb_keymap *keymap, const std::vector<std::vector<xcb_keycode_t>> &modifierKeys);
