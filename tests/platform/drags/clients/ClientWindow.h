// SPDX-License-Identifier: MIT
#pragma once

#include "Arguments.h"

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

// The X connection of a test client and its one window, placed by --x, --y, --width and --height.
class ClientWindow {
public:
    ClientWindow(const Arguments &arguments, uint32_t events)
        : connection(xcb_connect(nullptr, nullptr))
    {
        if (xcb_connection_has_error(connection) != 0)
            std::exit(1);
        screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
        window = xcb_generate_id(connection);
        const uint32_t values[] = {screen->white_pixel, 1, events};
        xcb_create_window(
            connection, XCB_COPY_FROM_PARENT, window, screen->root, static_cast<int16_t>(arguments.number("--x", 0)),
            static_cast<int16_t>(arguments.number("--y", 0)), static_cast<uint16_t>(arguments.number("--width", 100)),
            static_cast<uint16_t>(arguments.number("--height", 100)), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
            screen->root_visual, XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    }

    // Shows the window, and tells the test once the server has done that.
    void show()
    {
        xcb_map_window(connection, window);
        std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
        say("ready");
    }

    xcb_atom_t atom(const char *name)
    {
        xcb_intern_atom_reply_t *reply = xcb_intern_atom_reply(
            connection, xcb_intern_atom(connection, 0, static_cast<uint16_t>(std::strlen(name)), name), nullptr);
        const xcb_atom_t value = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
        std::free(reply);
        return value;
    }

    std::string name(xcb_atom_t atom)
    {
        xcb_get_atom_name_reply_t *reply =
            xcb_get_atom_name_reply(connection, xcb_get_atom_name(connection, atom), nullptr);
        std::string text;
        if (reply)
            text.assign(xcb_get_atom_name_name(reply), static_cast<std::size_t>(xcb_get_atom_name_name_length(reply)));
        std::free(reply);
        return text;
    }

    // The atoms in a window's property.
    std::vector<xcb_atom_t> atoms(xcb_window_t of, xcb_atom_t property)
    {
        xcb_get_property_reply_t *reply = xcb_get_property_reply(
            connection, xcb_get_property(connection, 0, of, property, XCB_ATOM_ATOM, 0, 64), nullptr);
        std::vector<xcb_atom_t> values;
        if (reply && reply->format == 32) {
            const auto *first = static_cast<const xcb_atom_t *>(xcb_get_property_value(reply));
            values.assign(first, first + reply->value_len);
        }
        std::free(reply);
        return values;
    }

    void send(xcb_window_t to, xcb_atom_t type, std::initializer_list<uint32_t> data)
    {
        xcb_client_message_event_t message = {};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = to;
        message.type = type;
        std::size_t i = 0;
        for (const uint32_t value : data)
            message.data.data32[i++] = value;
        xcb_send_event(connection, 0, to, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char *>(&message));
        xcb_flush(connection);
    }

    static void say(const char *line)
    {
        std::puts(line);
        std::fflush(stdout);
    }

    xcb_connection_t *connection;
    xcb_screen_t *screen = nullptr;
    xcb_window_t window = XCB_NONE;
};

struct FreeEvent {
    void operator()(xcb_generic_event_t *event) const { std::free(event); }
};
using Event = std::unique_ptr<xcb_generic_event_t, FreeEvent>;
