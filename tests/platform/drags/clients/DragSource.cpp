// SPDX-License-Identifier: MIT
//
// A window from which a drag begins when the pointer moves with the left button down:
//   --urls N                what it carries: so many file URLs (1)
//   --list TEXT             or this list instead
//   --link URL              a link, as browsers drag it, and no list; it then also tells what it offers
//   --answer whole|pieces|stall|wrong|refuse|strict|never|die   what it does when it is asked:
//                           strict ones answer only in the name of their latest pointer event, stalling ones
//                           send one piece and no more
//   --delay MILLISECONDS    before it does so (0)
//   --after N               how many questions it refuses first (0)
//   --keeps 0|1             whether it keeps the selection after the drag (0)
// It tells what happens on its standard output, a word a line.
#include "ClientWindow.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <string>
#include <thread>

namespace {

constexpr std::size_t kPiece = 1000;

std::string contents(const Arguments &arguments)
{
    std::string list = arguments.text("--list", "");
    if (!list.empty())
        return list + "\r\n";
    for (int i = 0; i < arguments.number("--urls", 1); ++i)
        list += "file:///tmp/dragged%20" + std::to_string(i) + "\r\n";
    return list;
}

// A link as a browser drags it: an address and a title in UTF-16.
std::u16string linkTo(const std::string &url)
{
    return std::u16string(url.begin(), url.end()) + u"\nA title";
}

// An answer in progress that is sent in pieces.
struct Pieces {
    xcb_window_t requestor = XCB_NONE;
    xcb_atom_t property = XCB_ATOM_NONE;
    std::size_t sent = 0;
    bool stalls = false;
};

} // namespace

int main(int argc, char **argv)
{
    const Arguments arguments(argc, argv);
    ClientWindow client(arguments,
                        XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_BUTTON_1_MOTION);
    xcb_connection_t *connection = client.connection;
    const xcb_atom_t selection = client.atom("XdndSelection");
    const xcb_atom_t uriList = client.atom("text/uri-list");
    const xcb_atom_t incr = client.atom("INCR");
    const std::string list = contents(arguments);
    const std::string url = arguments.text("--link", "");
    const std::u16string link = linkTo(url);
    const xcb_atom_t linkType = client.atom("text/x-moz-url");
    const xcb_atom_t offersType = client.atom("TARGETS");
    const std::array<xcb_atom_t, 2> offers = {offersType, linkType};
    const std::string answer = arguments.text("--answer", "whole");
    int refusals = arguments.number("--after", 0);
    client.show();

    bool dragging = false;
    xcb_timestamp_t latest = XCB_CURRENT_TIME;
    Pieces pieces;
    while (const Event event{xcb_wait_for_event(connection)}) {
        switch (event->response_type & 0x7f) {
        case XCB_MOTION_NOTIFY:
            latest = reinterpret_cast<const xcb_motion_notify_event_t &>(*event).time;
            if (!dragging) {
                dragging = true;
                xcb_set_selection_owner(connection, client.window, selection, latest);
                client.say("dragging");
            }
            break;
        case XCB_BUTTON_RELEASE:
            if (dragging && arguments.number("--keeps", 0) == 0)
                xcb_set_selection_owner(connection, XCB_NONE, selection,
                                        reinterpret_cast<const xcb_button_release_event_t &>(*event).time);
            dragging = false;
            client.say("released");
            break;
        case XCB_SELECTION_REQUEST: {
            const auto &request = reinterpret_cast<const xcb_selection_request_event_t &>(*event);
            client.say("asked");
            std::this_thread::sleep_for(std::chrono::milliseconds(arguments.number("--delay", 0)));
            if (answer == "die")
                return 0;
            if (answer == "never")
                break;
            const bool known =
                url.empty() ? request.target == uriList : request.target == linkType || request.target == offersType;
            const bool refused =
                answer == "refuse" || (answer == "strict" && request.time != latest) || !known || refusals-- > 0;
            const auto size = static_cast<uint32_t>(list.size());
            if (!refused && request.target == offersType) {
                xcb_change_property(connection, XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                                    XCB_ATOM_ATOM, 32, offers.size(), offers.data());
            } else if (!refused && request.target == linkType) {
                xcb_change_property(connection, XCB_PROP_MODE_REPLACE, request.requestor, request.property, linkType, 8,
                                    static_cast<uint32_t>(link.size() * sizeof(char16_t)), link.data());
            } else if (!refused && (answer == "pieces" || answer == "stall")) {
                const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
                xcb_change_window_attributes(connection, request.requestor, XCB_CW_EVENT_MASK, &events);
                xcb_change_property(connection, XCB_PROP_MODE_REPLACE, request.requestor, request.property, incr, 32, 1,
                                    &size);
                pieces = {request.requestor, request.property, 0, answer == "stall"};
            } else if (!refused) {
                xcb_change_property(connection, XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                                    answer == "wrong" ? xcb_atom_t{XCB_ATOM_STRING} : uriList, 8, size, list.data());
            }
            xcb_selection_notify_event_t notify = {};
            notify.response_type = XCB_SELECTION_NOTIFY;
            notify.time = request.time;
            notify.requestor = request.requestor;
            notify.selection = request.selection;
            notify.target = request.target;
            notify.property = refused ? xcb_atom_t{XCB_ATOM_NONE} : request.property;
            xcb_send_event(connection, 0, request.requestor, XCB_EVENT_MASK_NO_EVENT,
                           reinterpret_cast<const char *>(&notify));
            client.say(refused ? "refused" : "answered");
            break;
        }
        case XCB_PROPERTY_NOTIFY: {
            const auto &change = reinterpret_cast<const xcb_property_notify_event_t &>(*event);
            if (change.window != pieces.requestor || change.atom != pieces.property ||
                change.state != XCB_PROPERTY_DELETE || (pieces.stalls && pieces.sent > 0))
                break;
            const std::size_t length = std::min(kPiece, list.size() - pieces.sent);
            xcb_change_property(connection, XCB_PROP_MODE_REPLACE, pieces.requestor, pieces.property, uriList, 8,
                                static_cast<uint32_t>(length), list.data() + pieces.sent);
            pieces.sent += length;
            if (length == 0) {
                pieces = {};
                client.say("finished");
            }
            break;
        }
        default:
            break;
        }
        xcb_flush(connection);
    }
    return 0;
}
