// SPDX-License-Identifier: MIT
#include "platform/linux/drags/EscapeGrab.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr xcb_keysym_t kEscape = 0xff1b;
constexpr xcb_keysym_t kNumLock = 0xff7f;
constexpr int kModifiers = 8;

struct FreeSymbols {
    void operator()(xcb_key_symbols_t *symbols) const { xcb_key_symbols_free(symbols); }
};
using KeySymbols = std::unique_ptr<xcb_key_symbols_t, FreeSymbols>;

std::vector<xcb_keycode_t> keycodes(xcb_key_symbols_t *symbols, xcb_keysym_t symbol)
{
    const XcbReply<xcb_keycode_t> found(xcb_key_symbols_get_keycode(symbols, symbol));
    std::vector<xcb_keycode_t> codes;
    for (const xcb_keycode_t *code = found.get(); code && *code != XCB_NO_SYMBOL; ++code)
        codes.push_back(*code);
    return codes;
}

// The modifier to which the keyboard maps Num Lock, or 0.
quint16 numLockModifier(XcbConnection &connection, xcb_key_symbols_t *symbols)
{
    const auto codes = keycodes(symbols, kNumLock);
    const auto mapping = connection.reply(xcb_get_modifier_mapping_reply, xcb_get_modifier_mapping(connection.get()));
    if (!mapping)
        return 0;
    const xcb_keycode_t *key = xcb_get_modifier_mapping_keycodes(mapping.get());
    for (int modifier = 0; modifier < kModifiers; ++modifier) {
        for (int i = 0; i < mapping->keycodes_per_modifier; ++i, ++key) {
            if (*key != 0 && std::ranges::find(codes, *key) != codes.end())
                return static_cast<quint16>(1u << modifier);
        }
    }
    return 0;
}

// A grab applies to one exact set of modifiers, and the lock keys are modifiers too.
std::array<quint16, 4> lockCombinations(quint16 numLock)
{
    return {0, XCB_MOD_MASK_LOCK, numLock, static_cast<quint16>(numLock | XCB_MOD_MASK_LOCK)};
}

} // namespace

EscapeGrab::EscapeGrab(std::shared_ptr<XcbConnection> xcb, std::function<void()> onPressed)
    : connection(std::move(xcb))
{
    const KeySymbols symbols(xcb_key_symbols_alloc(connection->get()));
    if (!symbols)
        return;
    keys = keycodes(symbols.get(), kEscape);
    for (const xcb_keycode_t key : keys) {
        for (const quint16 locks : lockCombinations(numLockModifier(*connection, symbols.get())))
            xcb_grab_key(connection->get(), 0, connection->root(), locks, key, XCB_GRAB_MODE_ASYNC,
                         XCB_GRAB_MODE_ASYNC);
    }
    connection->flush();
    subscription = connection->listen([codes = keys, pressed = std::move(onPressed)](const xcb_generic_event_t &event) {
        if (eventType(event) != XCB_KEY_PRESS)
            return;
        const auto &press = reinterpret_cast<const xcb_key_press_event_t &>(event);
        if (std::ranges::find(codes, press.detail) != codes.end())
            pressed();
    });
}

EscapeGrab::~EscapeGrab()
{
    // This releases Escape with every set of modifiers. Nothing else is grabbed on this connection.
    for (const xcb_keycode_t key : keys)
        xcb_ungrab_key(connection->get(), key, connection->root(), XCB_MOD_MASK_ANY);
    connection->flush();
}
