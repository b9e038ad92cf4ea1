// SPDX-License-Identifier: MIT
#include "platform/linux/drags/XcbEventMonitors.h"

#include "platform/linux/drags/ForeignDragWatcher.h"

#include <utility>
#include <vector>

XcbEventMonitors::XcbEventMonitors(std::shared_ptr<ForeignDragWatcher> dragWatcher)
    : watcher(std::move(dragWatcher))
{
    watcher->onDragged = [this] { send(LeftMouseDragged); };
    watcher->onEnded = [this] { send(LeftMouseUp); };
}

XcbEventMonitors::~XcbEventMonitors()
{
    watcher->onDragged = nullptr;
    watcher->onEnded = nullptr;
}

std::optional<EventMonitors::Token> XcbEventMonitors::add(quint32 mask, std::function<void()> handler)
{
    if (!watcher->start())
        return {};
    monitors[++lastToken] = std::make_shared<const Monitor>(Monitor{mask, std::move(handler)});
    return lastToken;
}

void XcbEventMonitors::remove(Token token)
{
    monitors.erase(token);
}

void XcbEventMonitors::send(EventMask event)
{
    // A handler may add monitors, which do not hear this event, and remove any, which then do not either.
    std::vector<Token> audience;
    for (const auto &[token, monitor] : monitors) {
        if ((monitor->mask & event) != 0)
            audience.push_back(token);
    }
    for (const Token token : audience) {
        const auto found = monitors.find(token);
        if (found == monitors.end())
            continue;
        const auto monitor = found->second;
        monitor->handler();
    }
}
