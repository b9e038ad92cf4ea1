// SPDX-License-Identifier: MIT
#include "platform/linux/drags/BridgedDragPoll.h"

#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr auto kInterval = 100ms;

} // namespace

BridgedDragPoll::BridgedDragPoll(std::shared_ptr<XcbConnection> xcb)
    : connection(std::move(xcb))
{
    next.setInterval(kInterval);
    QObject::connect(&next, &QTimer::timeout, &next, [this] { ask(); });
}

BridgedDragPoll::~BridgedDragPoll()
{
    if (requestor != XCB_NONE)
        xcb_destroy_window(connection->get(), requestor);
}

void BridgedDragPoll::start(xcb_timestamp_t time)
{
    if (requestor == XCB_NONE) {
        requestor = xcb_generate_id(connection->get());
        xcb_create_window(connection->get(), 0, requestor, connection->root(), -1, -1, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    }
    subscription = connection->listen([this](const xcb_generic_event_t &event) { handle(event); });
    began = time;
    isAnswerDue = false;
    next.start();
}

void BridgedDragPoll::stop()
{
    subscription.reset();
    next.stop();
}

void BridgedDragPoll::ask()
{
    // While an answer is due, no second question is sent.
    if (std::exchange(isAnswerDue, true))
        return;
    const xcb_atom_t answer = connection->atom("_PARKLET_DRAG_GOES_ON");
    xcb_convert_selection(connection->get(), requestor, connection->atom("XdndSelection"), connection->atom("TARGETS"),
                          answer, began);
    connection->flush();
}

void BridgedDragPoll::handle(const xcb_generic_event_t &event)
{
    if (eventType(event) != XCB_SELECTION_NOTIFY)
        return;
    const auto &answer = reinterpret_cast<const xcb_selection_notify_event_t &>(event);
    // A late answer may belong to the drag before.
    if (answer.requestor != requestor || answer.time != began)
        return;
    isAnswerDue = false;
    if (answer.property != XCB_ATOM_NONE) {
        xcb_delete_property(connection->get(), requestor, answer.property);
        if (onGoesOn)
            onGoesOn();
        return;
    }
    stop();
    if (onOver)
        onOver();
}
