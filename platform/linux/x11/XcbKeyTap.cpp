// SPDX-License-Identifier: MIT
#include "platform/linux/x11/XcbKeyTap.h"

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon-x11.h>

// The C header has a field named "explicit".
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

#include <algorithm>
#include <utility>

namespace {

// XKB's name for the place of "a": row C, first key.
constexpr const char *kPlaceOfA = "AC01";

constexpr quint16 kRealModifiers = 0xff;
constexpr quint16 kXkbMapParts = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS |
                                 XCB_XKB_MAP_PART_MODIFIER_MAP | XCB_XKB_MAP_PART_VIRTUAL_MODS;
constexpr quint16 kXkbEvents =
    XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY | XCB_XKB_EVENT_TYPE_STATE_NOTIFY;

struct XkbUnref {
    void operator()(xkb_context *context) const { xkb_context_unref(context); }
    void operator()(xkb_keymap *keymap) const { xkb_keymap_unref(keymap); }
    void operator()(xkb_state *state) const { xkb_state_unref(state); }
};

// The symbol of the key in that group without a modifier.
xkb_keysym_t plainSymbol(xkb_keymap *keymap, xkb_keycode_t code, xkb_layout_index_t group)
{
    const xkb_keysym_t *symbols = nullptr;
    const int count = xkb_keymap_key_get_syms_by_level(keymap, code, group, 0, &symbols);
    return count > 0 ? symbols[0] : XKB_KEY_NoSymbol;
}

std::vector<xcb_keycode_t> keyCodesOf(xkb_keymap *keymap, xkb_keysym_t symbol, xkb_layout_index_t group)
{
    constexpr xkb_keycode_t kHighestCoreCode = 255;
    std::vector<xcb_keycode_t> codes;
    const xkb_keycode_t last = std::min(xkb_keymap_max_keycode(keymap), kHighestCoreCode);
    for (xkb_keycode_t code = xkb_keymap_min_keycode(keymap); code <= last; ++code) {
        // Code 0 means any key.
        if (code != XCB_GRAB_ANY && plainSymbol(keymap, code, group) == symbol)
            codes.push_back(static_cast<xcb_keycode_t>(code));
    }
    return codes;
}

bool isLevelLock(xkb_keysym_t symbol)
{
    return symbol == XKB_KEY_ISO_Level3_Lock || symbol == XKB_KEY_ISO_Level5_Lock;
}

// The modifier bits that a press of the key at that level locks.
quint16 lockedBits(xkb_keymap *keymap, xkb_keycode_t code, xkb_layout_index_t group, xkb_level_index_t level)
{
    xkb_mod_mask_t held = 0;
    const std::unique_ptr<xkb_state, XkbUnref> state(xkb_state_new(keymap));
    if (!state || xkb_keymap_key_get_mods_for_level(keymap, code, group, level, &held, 1) == 0)
        return 0;
    xkb_state_update_mask(state.get(), held, 0, 0, 0, 0, group);
    xkb_state_update_key(state.get(), code, XKB_KEY_DOWN);
    return static_cast<quint16>(xkb_state_serialize_mods(state.get(), XKB_STATE_MODS_LOCKED) & kRealModifiers);
}

// The modifier bits of locks of shift levels. Their keys may belong to no modifier.
quint16 levelLockBits(xkb_keymap *keymap)
{
    quint16 bits = 0;
    const xkb_keysym_t *symbols = nullptr;
    for (xkb_keycode_t code = xkb_keymap_min_keycode(keymap); code <= xkb_keymap_max_keycode(keymap); ++code) {
        for (xkb_layout_index_t group = 0; group < xkb_keymap_num_layouts_for_key(keymap, code); ++group) {
            for (xkb_level_index_t level = 0; level < xkb_keymap_num_levels_for_key(keymap, code, group); ++level) {
                if (xkb_keymap_key_get_syms_by_level(keymap, code, group, level, &symbols) > 0 &&
                    isLevelLock(symbols[0]))
                    bits = static_cast<quint16>(bits | lockedBits(keymap, code, group, level));
            }
        }
    }
    return bits;
}

} // namespace

XcbKeyTap::XcbKeyTap(std::shared_ptr<XcbConnection> connection)
    : xcb(std::move(connection))
{
    regrab.setSingleShot(true);
    QObject::connect(&regrab, &QTimer::timeout, &regrab, [this] {
        if (handler) {
            ungrab();
            grab();
        }
    });
}

XcbKeyTap::~XcbKeyTap()
{
    XcbKeyTap::remove();
}

bool XcbKeyTap::install(Handler tapHandler)
{
    remove();
    if (!xcb ||
        !xkb_x11_setup_xkb_extension(xcb->get(), XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                                     XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &keyboardEvent, nullptr))
        return false;
    if (!grab())
        return false;
    handler = std::move(tapHandler);
    subscription = xcb->listen([this](const xcb_generic_event_t &event) { handle(event); });
    selectKeyboardEvents(true);
    return true;
}

void XcbKeyTap::remove()
{
    if (!handler)
        return;
    handler = nullptr;
    subscription.reset();
    regrab.stop();
    selectKeyboardEvents(false);
    ungrab();
}

bool XcbKeyTap::grab()
{
    const std::unique_ptr<xkb_context, XkbUnref> context(xkb_context_new(XKB_CONTEXT_NO_FLAGS));
    if (!context)
        return false;
    xkb_context_set_log_level(context.get(), XKB_LOG_LEVEL_CRITICAL);
    const auto modifierQuery = xcb_get_modifier_mapping(xcb->get());
    const int device = xkb_x11_get_core_keyboard_device_id(xcb->get());
    const std::unique_ptr<xkb_keymap, XkbUnref> keymap(
        xkb_x11_keymap_new_from_device(context.get(), xcb->get(), device, XKB_KEYMAP_COMPILE_NO_FLAGS));
    const auto modifiers = xcb->reply(xcb_get_modifier_mapping_reply, modifierQuery);
    if (!keymap || !modifiers)
        return false;
    const std::unique_ptr<xkb_state, XkbUnref> state(xkb_x11_state_new_from_device(keymap.get(), xcb->get(), device));
    if (!state)
        return false;

    const xcb_keycode_t *codes = xcb_get_modifier_mapping_keycodes(modifiers.get());
    std::vector<std::vector<xcb_keycode_t>> modifierKeys;
    for (int i = 0; i < 8; ++i, codes += modifiers->keycodes_per_modifier)
        modifierKeys.emplace_back(codes, codes + modifiers->keycodes_per_modifier);
    locks = lockModifiers(keymap.get(), modifierKeys);

    std::vector<xcb_void_cookie_t> cookies;
    for (const xcb_keycode_t code :
         keyCodesOfA(keymap.get(), xkb_state_serialize_layout(state.get(), XKB_STATE_LAYOUT_EFFECTIVE))) {
        // A grab matches one exact set of modifiers, so grab once for each subset of the lock bits.
        quint16 subset = locks;
        do {
            grabs.push_back({code, static_cast<quint16>(XCB_MOD_MASK_CONTROL | subset)});
            cookies.push_back(xcb_grab_key_checked(xcb->get(), 1, xcb->root(), grabs.back().modifiers, code,
                                                   XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
            subset = (subset - 1) & locks;
        } while (subset != locks);
    }
    bool granted = !cookies.empty();
    for (const xcb_void_cookie_t cookie : cookies)
        granted &= xcb->succeeded(cookie);
    if (!granted)
        ungrab();
    return granted;
}

void XcbKeyTap::ungrab()
{
    std::vector<xcb_void_cookie_t> cookies;
    for (const Grab &grab : grabs)
        cookies.push_back(xcb_ungrab_key_checked(xcb->get(), grab.code, xcb->root(), grab.modifiers));
    grabs.clear();
    // Wait for the server: a key that is pressed after the removal must reach the focused program.
    for (const xcb_void_cookie_t cookie : cookies)
        xcb->succeeded(cookie);
}

void XcbKeyTap::selectKeyboardEvents(bool selected)
{
    xcb_xkb_select_events_details_t details = {};
    details.affectNewKeyboard = XCB_XKB_NKN_DETAIL_KEYCODES;
    details.affectState = XCB_XKB_STATE_PART_GROUP_STATE;
    if (selected) {
        details.newKeyboardDetails = details.affectNewKeyboard;
        details.stateDetails = details.affectState;
    }
    const quint16 map = selected ? kXkbMapParts : 0;
    xcb_xkb_select_events_aux(xcb->get(), XCB_XKB_ID_USE_CORE_KBD, kXkbEvents, 0, 0, kXkbMapParts, map, &details);
    xcb->flush();
}

void XcbKeyTap::handle(const xcb_generic_event_t &event)
{
    const quint8 type = eventType(event);
    if (type == XCB_MAPPING_NOTIFY || type == keyboardEvent) {
        regrab.start(0);
        return;
    }
    if (type != XCB_KEY_PRESS)
        return;
    const auto &press = reinterpret_cast<const xcb_key_press_event_t &>(event);
    const bool isOurs = std::any_of(grabs.begin(), grabs.end(), [&](const Grab &grab) {
        return grab.code == press.detail && grab.modifiers == (press.state & kRealModifiers);
    });
    if (isOurs) {
        const Handler keep = handler; // it may remove the tap
        keep(Qt::Key_A, Qt::ControlModifier);
    }
}

std::vector<xcb_keycode_t> keyCodesOfA(xkb_keymap *keymap, xkb_layout_index_t group)
{
    std::vector<xcb_keycode_t> codes = keyCodesOf(keymap, XKB_KEY_a, group);
    const xkb_layout_index_t groups = xkb_keymap_num_layouts(keymap);
    for (xkb_layout_index_t other = 0; codes.empty() && other < groups; ++other)
        codes = keyCodesOf(keymap, XKB_KEY_a, other);
    if (codes.empty()) {
        const xkb_keycode_t place = xkb_keymap_key_by_name(keymap, kPlaceOfA);
        if (place != XKB_KEYCODE_INVALID && place != XCB_GRAB_ANY && place <= 255)
            codes.push_back(static_cast<xcb_keycode_t>(place));
    }
    return codes;
}

quint16 lockModifiers(xkb_keymap *keymap, const std::vector<std::vector<xcb_keycode_t>> &modifierKeys)
{
    auto bits = static_cast<quint16>(XCB_MOD_MASK_LOCK | levelLockBits(keymap));
    for (std::size_t modifier = 0; modifier < modifierKeys.size(); ++modifier) {
        for (const xcb_keycode_t code : modifierKeys[modifier]) {
            const xkb_keysym_t symbol = code == 0 ? XKB_KEY_NoSymbol : plainSymbol(keymap, code, 0);
            if (symbol == XKB_KEY_Num_Lock || symbol == XKB_KEY_Scroll_Lock || symbol == XKB_KEY_Kana_Lock)
                bits = static_cast<quint16>(bits | 1u << modifier);
        }
    }
    return bits;
}
