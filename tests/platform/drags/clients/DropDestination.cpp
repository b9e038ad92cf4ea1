// SPDX-License-Identifier: MIT
//
// A window that takes drops, well or badly:
//   --version N                        of the protocol it announces (5)
//   --status accept|refuse|never       its answer while the drag is over it
//   --finish accept|refuse|never|die   what it does with the drop, after
//   --delay MILLISECONDS               (0)
//   --action offered|Copy|Move|Link|Private|none   the operation it says it performed
//   --out FILE                         gets what was dropped
//   --die never|enter|drop             ends the program at that moment
// It tells what happens on its standard output, a word a line; the operations that a drag offers as "offers NAME" each,
// and the one that it proposes, when that changes, as "proposes NAME".
#include "ClientWindow.h"

#include <chrono>
#include <string>
#include <thread>

int main(int argc, char **argv)
{
    const Arguments arguments(argc, argv);
    ClientWindow client(arguments, XCB_EVENT_MASK_NO_EVENT);
    xcb_connection_t *connection = client.connection;
    const xcb_atom_t aware = client.atom("XdndAware");
    const xcb_atom_t enter = client.atom("XdndEnter");
    const xcb_atom_t position = client.atom("XdndPosition");
    const xcb_atom_t status = client.atom("XdndStatus");
    const xcb_atom_t leave = client.atom("XdndLeave");
    const xcb_atom_t drop = client.atom("XdndDrop");
    const xcb_atom_t finished = client.atom("XdndFinished");
    const xcb_atom_t selection = client.atom("XdndSelection");
    const xcb_atom_t actionList = client.atom("XdndActionList");
    const xcb_atom_t uriList = client.atom("text/uri-list");
    const xcb_atom_t data = client.atom("DROPPED");

    const auto version = static_cast<uint32_t>(arguments.number("--version", 5));
    const std::string answer = arguments.text("--status", "accept");
    const std::string finish = arguments.text("--finish", "accept");
    const std::string action = arguments.text("--action", "offered");
    const std::string die = arguments.text("--die", "never");
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, client.window, aware, XCB_ATOM_ATOM, 32, 1, &version);
    client.show();

    xcb_window_t source = XCB_NONE;
    xcb_atom_t offered = XCB_ATOM_NONE;
    while (const Event event{xcb_wait_for_event(connection)}) {
        const int type = event->response_type & 0x7f;
        if (type == XCB_SELECTION_NOTIFY) {
            xcb_get_property_reply_t *reply = xcb_get_property_reply(
                connection, xcb_get_property(connection, 1, client.window, data, XCB_ATOM_ANY, 0, 1u << 26), nullptr);
            if (FILE *file = std::fopen(arguments.text("--out", "/dev/null").c_str(), "wb")) {
                if (reply)
                    std::fwrite(xcb_get_property_value(reply), 1,
                                static_cast<std::size_t>(xcb_get_property_value_length(reply)), file);
                std::fclose(file);
            }
            std::free(reply);
            client.say("data");
            std::this_thread::sleep_for(std::chrono::milliseconds(arguments.number("--delay", 0)));
            if (finish == "die")
                return 0;
            if (finish == "never")
                continue;
            const bool done = finish == "accept";
            xcb_atom_t performed = offered;
            if (action == "none")
                performed = XCB_ATOM_NONE;
            else if (action != "offered")
                performed = client.atom(("XdndAction" + action).c_str());
            client.send(source, finished, {client.window, done ? 1u : 0u, done ? performed : 0u});
            client.say("finished");
            continue;
        }
        if (type != XCB_CLIENT_MESSAGE)
            continue;
        const auto &message = reinterpret_cast<const xcb_client_message_event_t &>(*event);
        if (message.type == enter) {
            source = message.data.data32[0];
            client.say("enter");
            for (const xcb_atom_t each : client.atoms(source, actionList))
                client.say(("offers " + client.name(each)).c_str());
            if (die == "enter")
                return 0;
        } else if (message.type == position) {
            if (offered != message.data.data32[4])
                client.say(("proposes " + client.name(message.data.data32[4])).c_str());
            offered = message.data.data32[4];
            if (answer != "never")
                client.send(source, status, {client.window, answer == "accept" ? 1u : 0u, 0, 0, offered});
            client.say("position");
        } else if (message.type == leave) {
            client.say("leave");
        } else if (message.type == drop) {
            client.say("drop");
            if (die == "drop")
                return 0;
            xcb_convert_selection(connection, client.window, selection, uriList, data, message.data.data32[2]);
            xcb_flush(connection);
        }
    }
    return 0;
}
