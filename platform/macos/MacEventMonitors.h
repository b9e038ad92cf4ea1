// SPDX-License-Identifier: MIT
#pragma once

#include "platform/EventMonitors.h"

#include <map>
#include <memory>

// AppKit's global monitors. They receive events of other applications only, and only in a trusted process (one with the
// accessibility permission).
class MacEventMonitors : public EventMonitors {
public:
    MacEventMonitors();
    ~MacEventMonitors() override;

    std::optional<Token> add(quint32 mask, std::function<void()> handler) override;
    void remove(Token token) override;

private:
    struct Monitor;

    std::map<Token, std::shared_ptr<Monitor>> monitors;
    Token lastToken = 0;
};
