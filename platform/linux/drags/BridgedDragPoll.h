// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/x11/XcbConnection.h"

#include <QTimer>

#include <functional>
#include <memory>

// Asks a Wayland compositor repeatedly whether a drag of a native program is still in progress, because no event on its
// X server reports the end. The compositor answers without the drag's source. Between drags it asks nothing.
class BridgedDragPoll {
public:
    explicit BridgedDragPoll(std::shared_ptr<XcbConnection> connection);
    ~BridgedDragPoll();

    // The drag is still in progress.
    std::function<void()> onGoesOn;
    // The drag is over, and the polling has stopped.
    std::function<void()> onOver;

    // Starts to poll. `time` is the time of the event with which the drag began.
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
