// SPDX-License-Identifier: MIT
//
// A window of a Wayland compositor, which stands for the native one that a drag is over. It agrees to each drag, never
// tells what came of a drop, and bears times of its own:
//   --hover reads|waits   whether it asks for the list while the drag is over it (waits)
//   --drop asks|waits     at the drop it asks what is offered, and then for the list, or waits for SIGUSR1 first (asks)
//   --out FILE            gets what was dropped
// It tells what happens on its standard output, a line each: "offered TYPE", "refused", "data", "proposes ACTION".
#include "ClientWindow.h"

#include <csignal>
#include <string>

int main(int argc, char **argv)
{
    const Arguments arguments(argc, argv);
    sigset_t awaited;
    sigemptyset(&awaited);
    sigaddset(&awaited, SIGUSR1);
    sigprocmask(SIG_BLOCK, &awaited, nullptr);
    ClientWindow client(arguments, XCB_EVENT_MASK_NO_EVENT);
    xcb_connection_t *connection = client.connection;
    const xcb_atom_t status = client.atom("XdndStatus");
    const xcb_atom_t position = client.atom("XdndPosition");
    const xcb_atom_t drop = client.atom("XdndDrop");
    const xcb_atom_t selection = client.atom("XdndSelection");
    const xcb_atom_t uriList = client.atom("text/uri-list");
    const xcb_atom_t targets = client.atom("TARGETS");
    const xcb_atom_t data = client.atom("DROPPED");
    constexpr uint32_t version = 5;
    constexpr uint32_t accepts = 1;
    constexpr xcb_timestamp_t earlier = 3; // milliseconds by which its times differ from those of the messages

    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, client.window, client.atom("XdndAware"), XCB_ATOM_ATOM, 32,
                        1, &version);
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, client.screen->root, client.atom("_NET_SUPPORTING_WM_CHECK"),
                        XCB_ATOM_WINDOW, 32, 1, &client.window);
    client.show();

    const auto ask = [&](xcb_atom_t type, xcb_timestamp_t time) {
        xcb_convert_selection(connection, client.window, selection, type, data, time - earlier);
        xcb_flush(connection);
    };
    bool reads = arguments.text("--hover", "waits") == "reads";
    xcb_atom_t proposed = XCB_ATOM_NONE;
    while (const Event event{xcb_wait_for_event(connection)}) {
        const int type = event->response_type & 0x7f;
        if (type == XCB_SELECTION_NOTIFY) {
            const auto &answer = reinterpret_cast<const xcb_selection_notify_event_t &>(*event);
            if (answer.property == XCB_ATOM_NONE) {
                client.say("refused");
            } else if (answer.target == targets) {
                for (const xcb_atom_t each : client.atoms(client.window, data))
                    client.say(("offered " + client.name(each)).c_str());
                ask(uriList, answer.time + earlier);
            } else {
                xcb_get_property_reply_t *reply = xcb_get_property_reply(
                    connection, xcb_get_property(connection, 1, client.window, data, XCB_ATOM_ANY, 0, 1024), nullptr);
                if (FILE *file = std::fopen(arguments.text("--out", "/dev/null").c_str(), "wb")) {
                    if (reply)
                        std::fwrite(xcb_get_property_value(reply), 1,
                                    static_cast<std::size_t>(xcb_get_property_value_length(reply)), file);
                    std::fclose(file);
                }
                std::free(reply);
                client.say("data");
            }
            continue;
        }
        if (type != XCB_CLIENT_MESSAGE)
            continue;
        const auto &message = reinterpret_cast<const xcb_client_message_event_t &>(*event);
        const auto &fields = message.data.data32;
        if (message.type == position) {
            if (proposed != fields[4])
                client.say(("proposes " + client.name(fields[4])).c_str());
            proposed = fields[4];
            if (reads)
                ask(uriList, fields[3]);
            reads = false;
            client.send(fields[0], status, {client.window, accepts, 0, 0, proposed});
            client.say("position");
        } else if (message.type == drop) {
            client.say("drop");
            int signal = 0;
            if (arguments.text("--drop", "asks") == "waits")
                sigwait(&awaited, &signal);
            ask(targets, fields[2]);
        }
    }
    return 0;
}
