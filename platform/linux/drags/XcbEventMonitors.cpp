// SPDX-License-Identifier: MIT
#include "platform/linux/drags/XcbEventMonitors.h"

#include "platform/linux/drags/EdgeStrip.h"
#include "platform/linux/drags/ForeignDragWatcher.h"

#include <utility>
#include <vector>

struct XcbEventMonitors::Monitor {
    quint32 mask;
    std::function<void()> handler;
    std::vector<std::unique_ptr<EdgeStrip>> strips;
};

XcbEventMonitors::XcbEventMonitors(std::shared_ptr<ForeignDragWatcher> dragWatcher,
                                   std::function<QList<Screen>()> allScreens)
    : watcher(std::move(dragWatcher))
    , screens(std::move(allScreens))
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
    monitors[++lastToken] = std::make_shared<const Monitor>(Monitor{mask, std::move(handler), {}});
    return lastToken;
}

std::optional<EventMonitors::Token> XcbEventMonitors::addNear(const QRectF &frame, std::function<void()> handler)
{
    if (!watcher->start())
        return {};
    auto strips = watcher->isBridged() ? stripsBeside(frame) : std::vector<std::unique_ptr<EdgeStrip>>();
    monitors[++lastToken] =
        std::make_shared<const Monitor>(Monitor{LeftMouseDragged, std::move(handler), std::move(strips)});
    return lastToken;
}

std::vector<std::unique_ptr<EdgeStrip>> XcbEventMonitors::stripsBeside(const QRectF &frame)
{
    std::vector<std::unique_ptr<EdgeStrip>> strips;
    for (const Screen &screen : screens ? screens() : QList<Screen>()) {
        if (!screen.frame.contains(frame.center()))
            continue;
        for (const QRect &place : edgeStrips(frame, screen.visibleFrame)) {
            strips.push_back(std::make_unique<EdgeStrip>(place));
            strips.back()->onPointer = [watching = watcher.get()](std::optional<QPointF> position) {
                watching->bridgedPointerMoved(position);
            };
            strips.back()->show();
        }
        break;
    }
    return strips;
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
