// SPDX-License-Identifier: MIT
// A window that drags from itself with test input. It reads commands from the standard input, one a line:
//   drag         begins a drag of one file, and prints the microseconds until the watched pixel has changed
//   text COUNT   begins a drag of a text, moves the pointer COUNT times, and ends it
//   end          ends the drag
//   gone         waits until the watched pixel has its first colour again
// It answers each command with a line. X and Y are the watched pixel: drag-source X Y
#include "Client.h"

#include <xcb/xtest.h>

#include <chrono>
#include <cstdio>
#include <string>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr auto kPatience = 10s;
constexpr auto kTick = 8ms; // between two motions of a mouse
constexpr int16_t kOnWindow = 50;
constexpr int16_t kOrigin = 10;
constexpr uint16_t kSize = 100;
const std::string kList = "file:///tmp/dragged.txt\r\n";

class Source {
public:
    Source(int16_t watchedX, int16_t watchedY)
        : client(Client::Kind::Override, kOrigin, kOrigin, kSize, kSize, XCB_EVENT_MASK_BUTTON_PRESS)
        , x(watchedX)
        , y(watchedY)
    {
        selection = client.atom("XdndSelection");
        uriList = client.atom("text/uri-list");
        targets = client.atom("TARGETS");
        text = client.atom("UTF8_STRING");
        xcb_map_window(client.connection, client.window);
        fake(XCB_MOTION_NOTIFY, 0, kOnWindow, kOnWindow);
        client.roundTrip();
        background = pixel();
    }

    // Returns the microseconds until the pixel has changed, or -1 when it does not change.
    long drag()
    {
        const Clock::time_point begin = announce(true);
        while (pixel() == background || !hasAnswered) {
            serve();
            if (Clock::now() - begin > kPatience)
                return -1;
        }
        return std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begin).count();
    }

    void dragText(int count)
    {
        announce(false);
        for (int i = 0; i < count; ++i) {
            fake(XCB_MOTION_NOTIFY, 1, i % 2 == 0 ? 3 : -3, 0);
            const Clock::time_point next = Clock::now() + kTick;
            while (Clock::now() < next) {
                serve();
                std::this_thread::sleep_for(kTick / 8);
            }
        }
        end();
    }

    void end()
    {
        fake(XCB_BUTTON_RELEASE, 1, 0, 0);
        xcb_set_selection_owner(client.connection, XCB_NONE, selection, XCB_CURRENT_TIME);
        client.roundTrip();
    }

    bool waitUntilGone()
    {
        const Clock::time_point limit = Clock::now() + kPatience;
        while (pixel() != background) {
            if (Clock::now() > limit)
                return false;
            std::this_thread::sleep_for(kTick);
        }
        return true;
    }

private:
    void fake(uint8_t type, uint8_t detail, int16_t dx, int16_t dy)
    {
        xcb_test_fake_input(client.connection, type, detail, XCB_CURRENT_TIME, XCB_NONE, dx, dy, 0);
        xcb_flush(client.connection);
    }

    // Presses the button and becomes the selection owner, as a source does at the beginning of a drag.
    Clock::time_point announce(bool files)
    {
        carriesFiles = files;
        hasAnswered = false;
        fake(XCB_BUTTON_PRESS, 1, 0, 0);
        client.roundTrip();
        const Clock::time_point now = Clock::now();
        xcb_set_selection_owner(client.connection, client.window, selection, XCB_CURRENT_TIME);
        xcb_flush(client.connection);
        return now;
    }

    void serve()
    {
        while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(client.connection)}) {
            if ((event->response_type & 0x7f) == XCB_SELECTION_REQUEST)
                answer(reinterpret_cast<const xcb_selection_request_event_t &>(*event));
        }
    }

    void answer(const xcb_selection_request_event_t &request)
    {
        const bool isList = request.target == uriList && carriesFiles;
        const bool isOffers = request.target == targets;
        if (isList)
            xcb_change_property(client.connection, XCB_PROP_MODE_REPLACE, request.requestor, request.property, uriList,
                                8, static_cast<uint32_t>(kList.size()), kList.data());
        else if (isOffers)
            xcb_change_property(client.connection, XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                                XCB_ATOM_ATOM, 32, 1, carriesFiles ? &uriList : &text);
        hasAnswered = true;
        xcb_selection_notify_event_t notify = {};
        notify.response_type = XCB_SELECTION_NOTIFY;
        notify.time = request.time;
        notify.requestor = request.requestor;
        notify.selection = request.selection;
        notify.target = request.target;
        notify.property = isList || isOffers ? request.property : xcb_atom_t{XCB_ATOM_NONE};
        xcb_send_event(client.connection, 0, request.requestor, XCB_EVENT_MASK_NO_EVENT,
                       reinterpret_cast<const char *>(&notify));
        xcb_flush(client.connection);
    }

    uint32_t pixel() const
    {
        const Reply<xcb_get_image_reply_t> image(xcb_get_image_reply(
            client.connection,
            xcb_get_image(client.connection, XCB_IMAGE_FORMAT_Z_PIXMAP, client.screen->root, x, y, 1, 1, ~0u),
            nullptr));
        uint32_t value = 0;
        if (image)
            std::memcpy(&value, xcb_get_image_data(image.get()), sizeof value);
        return value;
    }

    Client client;
    int16_t x;
    int16_t y;
    uint32_t background = 0;
    bool carriesFiles = true;
    bool hasAnswered = false;
    xcb_atom_t selection = XCB_ATOM_NONE;
    xcb_atom_t uriList = XCB_ATOM_NONE;
    xcb_atom_t targets = XCB_ATOM_NONE;
    xcb_atom_t text = XCB_ATOM_NONE;
};

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3)
        return 2;
    Source source(static_cast<int16_t>(std::atoi(argv[1])), static_cast<int16_t>(std::atoi(argv[2])));
    char command[16];
    while (std::scanf("%15s", command) == 1) {
        const std::string what = command;
        long result = 0;
        int count = 0;
        if (what == "drag")
            result = source.drag();
        else if (what == "text" && std::scanf("%d", &count) == 1)
            source.dragText(count);
        else if (what == "end")
            source.end();
        else if (what == "gone")
            result = source.waitUntilGone() ? 0 : -1;
        std::printf("%ld\n", result);
        std::fflush(stdout);
    }
    return 0;
}
