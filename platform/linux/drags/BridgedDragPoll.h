// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/x11/XcbConnection.h"

#include <QTimer>

#include <functional>
#include <memory>

// Asks a Wayland compositor whether the drag that it carries over to its X server goes on, as nothing tells of its end.
// It answers by itself, without the drag's source. Between drags nothing is asked.
class BridgedDragPoll {
public:
    explicit BridgedDragPoll(std::shared_ptr<XcbConnection> connection);
    ~BridgedDragPoll();

    // The drag goes on.
    std::function<void()> onGoesOn;
    // It is over; nothing is asked any more.
    std::function<void()> onOver;

    // Begins to ask, in the name of the event at `time` with which the drag began.
    void start(xcb_timestamp_t time);
    void stop();

private:
    void ask();
    void handle(const xcb_generic_event_t &event);

    std::shared_ptr<XcbConnection> connection;
    XcbConnection::Subscription subscription;
    xcb_window_t requestor = XCB_NONE;
    xcb_timestamp_t began = XCB_CURRENT_TIME;
    bool isAnswerDue = false;
    QTimer next;
};
