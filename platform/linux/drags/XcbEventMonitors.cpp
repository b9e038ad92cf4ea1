// SPDX-License-Identifier: MIT
#include "platform/linux/drags/XcbEventMonitors.h"

#include "platform/linux/drags/EdgeStrip.h"
#include "platform/linux/drags/ForeignDragWatcher.h"

#include <utility>

XcbEventMonitors::XcbEventMonitors(std::shared_ptr<ForeignDragWatcher> dragWatcher,
                                   std::function<QList<Screen>()> allScreens)
    : watcher(std::move(dragWatcher))
    , screens(std::move(allScreens))
{
    watcher->onDragged = [this] {
        tellEnd(); // of the drag before
        monitors.send(LeftMouseDragged);
    };
    watcher->onEnded = [this] { ended(); };
    patience.setSingleShot(true);
    QObject::connect(&patience, &QTimer::timeout, &patience, [this] { monitors.send(LeftMouseUp); });
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
    return monitors.add(mask, std::move(handler));
}

std::optional<EventMonitors::Token> XcbEventMonitors::addNear(const QRectF &frame, std::function<void()> handler)
{
    if (!watcher->start() || !watcher->isBridged())
        return add(LeftMouseDragged, std::move(handler));
    // The strips exist as long as the handler, also while it runs, because one of them may have caused the call.
    const auto strips = std::make_shared<const EdgeStrips>(stripsBeside(frame));
    return monitors.add(LeftMouseDragged, [strips, handle = std::move(handler)] { handle(); });
}

void XcbEventMonitors::remove(Token token)
{
    monitors.remove(token);
}

XcbEventMonitors::EdgeStrips XcbEventMonitors::stripsBeside(const QRectF &frame)
{
    EdgeStrips strips;
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

// A source may take its time between the release and its drop, which would find the window hidden.
void XcbEventMonitors::ended()
{
    if (onExpectsDrop && onExpectsDrop())
        patience.start(dropPatience);
    else
        monitors.send(LeftMouseUp);
}

void XcbEventMonitors::dropArrived()
{
    if (patience.isActive() && !onExpectsDrop())
        tellEnd();
}

void XcbEventMonitors::tellEnd()
{
    if (!patience.isActive())
        return;
    patience.stop();
    monitors.send(LeftMouseUp);
}
