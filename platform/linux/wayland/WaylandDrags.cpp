// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/WaylandDrags.h"

#include "platform/common/DragPicture.h"
#include "platform/common/QtDrags.h"

#include <QCursor>
#include <QDrag>
#include <QMimeData>
#include <QPointer>
#include <QWidget>

#include <utility>
#include <vector>

namespace {

// How near to a frame a drag is heard of, in points.
constexpr double kNear = 120;

} // namespace

WaylandEventMonitors::WaylandEventMonitors(std::shared_ptr<WaylandDragWatcher> dragWatcher)
    : watcher(std::move(dragWatcher))
{
    watcher->onDragged = [this] { send(LeftMouseDragged); };
    watcher->onEnded = [this] { send(LeftMouseUp); };
}

WaylandEventMonitors::~WaylandEventMonitors()
{
    watcher->onDragged = nullptr;
    watcher->onEnded = nullptr;
}

std::optional<EventMonitors::Token> WaylandEventMonitors::add(quint32 mask, std::function<void()> handler)
{
    watcher->start();
    monitors[++lastToken] = std::make_shared<const Monitor>(Monitor{mask, std::move(handler)});
    return lastToken;
}

std::optional<EventMonitors::Token> WaylandEventMonitors::addNear(const QRectF &frame, std::function<void()> handler)
{
    const auto token = add(LeftMouseDragged, std::move(handler));
    watcher->attend(frame.adjusted(-kNear, -kNear, kNear, kNear));
    return token;
}

void WaylandEventMonitors::remove(Token token)
{
    monitors.erase(token);
}

void WaylandEventMonitors::send(EventMask event)
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

WaylandDragSessions::WaylandDragSessions(std::shared_ptr<WaylandDragWatcher> dragWatcher,
                                         std::function<QColor()> accent)
    : watcher(std::move(dragWatcher))
    , accentColor(std::move(accent))
{
}

void WaylandDragSessions::begin(QWidget &source, const QList<DraggingItem> &items, DragOperation offered, Ended ended)
{
    if (isRunning || items.isEmpty() || offered == DragOperation::None)
        return;
    const DragPicture picture = dragPicture(items, source.mapFromGlobal(QPointF(QCursor::pos())),
                                            {.scale = source.devicePixelRatioF(), .accent = accentColor()});
    // Its parent outlives `source`: a drag whose parent is deleted under way never ends.
    auto *drag = new QDrag(this);
    drag->setMimeData(uriList(items).release());
    drag->setPixmap(picture.pixmap);
    drag->setHotSpot(picture.hotSpot);
    const Qt::DropAction action = offered == DragOperation::Link ? Qt::CopyAction : dropAction(offered);

    const QPointer<WaylandDragSessions> alive(this);
    isRunning = true;
    watcher->setOwnDrag(true);
    const Qt::DropAction performed = drag->exec(action, action);
    if (!alive)
        return;
    watcher->setOwnDrag(false);
    isRunning = false;
    ended(dragOperation(performed));
}
