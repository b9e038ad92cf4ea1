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

namespace {

// A monitor near a frame receives events up to so many points from it.
constexpr double kNear = 120;

} // namespace

WaylandEventMonitors::WaylandEventMonitors(std::shared_ptr<WaylandDragWatcher> dragWatcher)
    : watcher(std::move(dragWatcher))
{
    watcher->onDragged = [this] { monitors.send(LeftMouseDragged); };
    watcher->onEnded = [this] { monitors.send(LeftMouseUp); };
}

WaylandEventMonitors::~WaylandEventMonitors()
{
    watcher->onDragged = nullptr;
    watcher->onEnded = nullptr;
}

std::optional<EventMonitors::Token> WaylandEventMonitors::add(quint32 mask, std::function<void()> handler)
{
    watcher->start();
    return monitors.add(mask, std::move(handler));
}

std::optional<EventMonitors::Token> WaylandEventMonitors::addNear(const QRectF &frame, std::function<void()> handler)
{
    const auto token = add(LeftMouseDragged, std::move(handler));
    watcher->attend(frame.adjusted(-kNear, -kNear, kNear, kNear));
    return token;
}

void WaylandEventMonitors::remove(Token token)
{
    monitors.remove(token);
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
    // A drag whose parent is deleted before its end never ends. This object outlives `source`.
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
