// SPDX-License-Identifier: MIT
// Works the pointer and the keys of a Wayland session: one line of input is one act, answered by "done" when the
// compositor has heard of it. The arguments are the width and height of the desktop.
//   move X Y | button CODE 0|1 | key CODE 0|1 MODIFIERS
#include <QByteArray>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <memory>
#include <string>

#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client.h>
#include <xkbcommon/xkbcommon.h>

#include <fake-input-client-protocol.h>
#include <virtual-keyboard-client-protocol.h>
#include <virtual-pointer-client-protocol.h>

namespace {

struct Devices {
    wl_seat *seat = nullptr;
    org_kde_kwin_fake_input *fake = nullptr;
    zwlr_virtual_pointer_manager_v1 *pointers = nullptr;
    zwp_virtual_keyboard_manager_v1 *keyboards = nullptr;
};

template<typename T>
void bindTo(T *&global, wl_registry *registry, quint32 name, const wl_interface &interface, quint32 version)
{
    global = static_cast<T *>(wl_registry_bind(registry, name, &interface, version));
}

quint32 now()
{
    using namespace std::chrono;
    return quint32(duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

// Any layout will do for the few keys that the tests press.
void giveKeymap(zwp_virtual_keyboard_v1 *keyboard)
{
    xkb_context *context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
    xkb_keymap *keymap = xkb_keymap_new_from_names(context, nullptr, XKB_KEYMAP_COMPILE_NO_FLAGS);
    char *text = xkb_keymap_get_as_string(keymap, XKB_KEYMAP_FORMAT_TEXT_V1);
    const size_t size = std::strlen(text) + 1;
    const int file = ::memfd_create("keymap", MFD_CLOEXEC);
    if (file < 0 || ::write(file, text, size) != ssize_t(size))
        std::perror("keymap");
    zwp_virtual_keyboard_v1_keymap(keyboard, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file, quint32(size));
    ::close(file);
    std::free(text);
    xkb_keymap_unref(keymap);
    xkb_context_unref(context);
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 3)
        return 2;
    const quint32 width = quint32(std::stoi(argv[1]));
    const quint32 height = quint32(std::stoi(argv[2]));
    wl_display *display = wl_display_connect(nullptr);
    if (!display)
        return 1;
    Devices devices;
    static constexpr wl_registry_listener kListener = {
        .global =
            [](void *data, wl_registry *registry, quint32 name, const char *interface, quint32) {
                auto *found = static_cast<Devices *>(data);
                if (std::strcmp(interface, wl_seat_interface.name) == 0)
                    bindTo(found->seat, registry, name, wl_seat_interface, 1);
                else if (std::strcmp(interface, org_kde_kwin_fake_input_interface.name) == 0)
                    bindTo(found->fake, registry, name, org_kde_kwin_fake_input_interface, 4);
                else if (std::strcmp(interface, zwlr_virtual_pointer_manager_v1_interface.name) == 0)
                    bindTo(found->pointers, registry, name, zwlr_virtual_pointer_manager_v1_interface, 1);
                else if (std::strcmp(interface, zwp_virtual_keyboard_manager_v1_interface.name) == 0)
                    bindTo(found->keyboards, registry, name, zwp_virtual_keyboard_manager_v1_interface, 1);
            },
        .global_remove = [](void *, wl_registry *, quint32) {},
    };
    wl_registry_add_listener(wl_display_get_registry(display), &kListener, &devices);
    wl_display_roundtrip(display);

    zwlr_virtual_pointer_v1 *pointer = nullptr;
    zwp_virtual_keyboard_v1 *keyboard = nullptr;
    if (devices.fake) {
        org_kde_kwin_fake_input_authenticate(devices.fake, "hand", "tests");
    } else if (devices.pointers && devices.keyboards && devices.seat) {
        pointer = zwlr_virtual_pointer_manager_v1_create_virtual_pointer(devices.pointers, devices.seat);
        keyboard = zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(devices.keyboards, devices.seat);
        giveKeymap(keyboard);
    } else {
        return 1;
    }
    wl_display_roundtrip(display);

    std::string act;
    while (std::cin >> act) {
        quint32 first = 0;
        quint32 second = 0;
        std::cin >> first >> second;
        if (act == "move") {
            if (devices.fake) {
                org_kde_kwin_fake_input_pointer_motion_absolute(devices.fake, wl_fixed_from_int(int(first)),
                                                                wl_fixed_from_int(int(second)));
            } else {
                zwlr_virtual_pointer_v1_motion_absolute(pointer, now(), first, second, width, height);
                zwlr_virtual_pointer_v1_frame(pointer);
            }
        } else if (act == "button") {
            if (devices.fake) {
                org_kde_kwin_fake_input_button(devices.fake, first, second);
            } else {
                zwlr_virtual_pointer_v1_button(pointer, now(), first, second);
                zwlr_virtual_pointer_v1_frame(pointer);
            }
        } else if (act == "key") {
            quint32 modifiers = 0;
            std::cin >> modifiers;
            if (devices.fake) {
                org_kde_kwin_fake_input_keyboard_key(devices.fake, first, second);
            } else {
                zwp_virtual_keyboard_v1_key(keyboard, now(), first, second);
                zwp_virtual_keyboard_v1_modifiers(keyboard, modifiers, 0, 0, 0);
            }
        }
        if (wl_display_roundtrip(display) < 0)
            return 1;
        std::cout << "done" << std::endl;
    }
    return 0;
}
