// SPDX-License-Identifier: MIT
#pragma once

#include "platform/EventMonitors.h"

#include <map>
#include <memory>

// The monitors of one EventMonitors service. Main thread only.
class MonitorList {
public:
    using Token = EventMonitors::Token;

    // `handler` exists until its monitor is removed, and while it runs.
    Token add(quint32 mask, std::function<void()> handler);

    // Ignores an unknown token.
    void remove(Token token);

    // Calls the handler of each monitor whose mask has `event`. A handler may add and remove monitors: an added one
    // does not receive this event, and neither does a removed one.
    void send(EventMask event);

private:
    struct Monitor {
        quint32 mask;
        std::function<void()> handler;
    };

    std::map<Token, std::shared_ptr<const Monitor>> monitors;
    Token lastToken = 0;
};
