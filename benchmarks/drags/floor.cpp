// SPDX-License-Identifier: MIT
// The smallest program that reads a drag of another program. It reads the URLs and maps an empty window at the place of
// Parklet's shelf until the drag is over. The window is managed, or override-redirect: drag-floor managed|override X Y
// WIDTH HEIGHT
#include "Client.h"

#include <xcb/xfixes.h>

int main(int argc, char **argv)
{
    if (argc != 6)
        return 2;
    const auto number = [argv](int index) { return static_cast<int16_t>(std::atoi(argv[index])); };
    const auto kind = std::strcmp(argv[1], "managed") == 0 ? Client::Kind::Managed : Client::Kind::Override;
    const Client client(kind, number(2), number(3), static_cast<uint16_t>(number(4)), static_cast<uint16_t>(number(5)),
                        0);
    xcb_connection_t *connection = client.connection;
    const xcb_query_extension_reply_t *xfixes = xcb_get_extension_data(connection, &xcb_xfixes_id);
    const Reply<xcb_xfixes_query_version_reply_t> version(
        xcb_xfixes_query_version_reply(connection, xcb_xfixes_query_version(connection, 5, 0), nullptr));
    const xcb_atom_t selection = client.atom("XdndSelection");
    const xcb_atom_t uriList = client.atom("text/uri-list");
    const xcb_atom_t answer = client.atom("_DRAG_FLOOR");
    xcb_xfixes_select_selection_input(connection, client.screen->root, selection,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
    // The size hints say that the user has chosen the place.
    const uint32_t hints[18] = {1};
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, client.window, XCB_ATOM_WM_NORMAL_HINTS,
                        XCB_ATOM_WM_SIZE_HINTS, 32, 18, hints);
    xcb_flush(connection);
    while (const Reply<xcb_generic_event_t> event{xcb_wait_for_event(connection)}) {
        const int type = event->response_type & 0x7f;
        if (type == xfixes->first_event + XCB_XFIXES_SELECTION_NOTIFY) {
            const auto &change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t &>(*event);
            if (change.owner == XCB_NONE)
                xcb_unmap_window(connection, client.window);
            else
                xcb_convert_selection(connection, client.window, selection, uriList, answer,
                                      change.selection_timestamp);
        } else if (type == XCB_SELECTION_NOTIFY) {
            const Reply<xcb_get_property_reply_t> urls(xcb_get_property_reply(
                connection, xcb_get_property(connection, 1, client.window, answer, uriList, 0, 1u << 20), nullptr));
            if (urls && xcb_get_property_value_length(urls.get()) > 0)
                xcb_map_window(connection, client.window);
        }
        xcb_flush(connection);
    }
    return 0;
}
