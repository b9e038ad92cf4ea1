// SPDX-License-Identifier: MIT
#include "platform/common/MonitorList.h"

#include <utility>
#include <vector>

MonitorList::Token MonitorList::add(quint32 mask, std::function<void()> handler)
{
    monitors[++lastToken] = std::make_shared<const Monitor>(Monitor{mask, std::move(handler)});
    return lastToken;
}

void MonitorList::remove(Token token)
{
    monitors.erase(token);
}

void MonitorList::send(EventMask event)
{
    std::vector<Token> receivers;
    for (const auto &[token, monitor] : monitors) {
        if ((monitor->mask & event) != 0)
            receivers.push_back(token);
    }
    for (const Token token : receivers) {
        const auto found = monitors.find(token);
        if (found == monitors.end())
            continue;
        const auto monitor = found->second;
        monitor->handler();
    }
}
