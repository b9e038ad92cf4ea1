// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

struct Free {
    void operator()(void *memory) const { std::free(memory); }
};
template<typename T>
using Reply = std::unique_ptr<T, Free>;

// A connection to the X server, and the one window of a measuring program.
class Client {
public:
    // Whether the window is override-redirect, so that the window manager ignores it.
    enum class Kind : uint8_t { Managed, Override };

    Client(Kind kind, int16_t x, int16_t y, uint16_t width, uint16_t height, uint32_t events)
        : connection(xcb_connect(nullptr, nullptr))
    {
        if (xcb_connection_has_error(connection) != 0)
            std::exit(1);
        screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
        window = xcb_generate_id(connection);
        const uint32_t values[] = {screen->white_pixel, kind == Kind::Override, events};
        xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, screen->root, x, y, width, height, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual,
                          XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    }

    xcb_atom_t atom(const char *name) const
    {
        const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
            connection, xcb_intern_atom(connection, 0, static_cast<uint16_t>(std::strlen(name)), name), nullptr));
        return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    }

    // Waits until the server has handled all earlier requests.
    void roundTrip() const
    {
        const Reply<xcb_get_input_focus_reply_t> reply(
            xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    }

    xcb_connection_t *connection;
    xcb_screen_t *screen = nullptr;
    xcb_window_t window = XCB_NONE;
};
