// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DragPasteboard.h"
#include "platform/DragSessions.h"
#include "platform/EventMonitors.h"
#include "platform/common/MonitorList.h"
#include "platform/linux/wayland/WaylandDragWatcher.h"

#include <QColor>
#include <QObject>

#include <memory>

// The files of the drag that is in progress in another program, as the watcher has read them.
class WaylandDragPasteboard : public DragPasteboard {
public:
    explicit WaylandDragPasteboard(std::shared_ptr<const WaylandDragWatcher> dragWatcher)
        : watcher(std::move(dragWatcher))
    {
    }

    qint64 changeCount() const override { return watcher->changeCount(); }
    QList<QUrl> fileURLs() const override { return watcher->fileURLs(); }

private:
    std::shared_ptr<const WaylandDragWatcher> watcher;
};

// Reports the mouse during drags in other programs, as far as the watcher sees them.
class WaylandEventMonitors : public EventMonitors {
public:
    explicit WaylandEventMonitors(std::shared_ptr<WaylandDragWatcher> dragWatcher);
    ~WaylandEventMonitors() override;

    std::optional<Token> add(quint32 mask, std::function<void()> handler) override;
    void remove(Token token) override;
    std::optional<Token> addNear(const QRectF &frame, std::function<void()> handler) override;

private:
    std::shared_ptr<WaylandDragWatcher> watcher;
    MonitorList monitors;
};

// Drags out of a panel, with QDrag. Wayland has no link operation, so a copy is offered instead of a link. A
// destination that asks its user, as Dolphin does, can still make a link.
class WaylandDragSessions : public QObject, public DragSessions {
public:
    WaylandDragSessions(std::shared_ptr<WaylandDragWatcher> dragWatcher, std::function<QColor()> accent);

    void begin(QWidget &source, const QList<DraggingItem> &items, DragOperation offered, Ended ended) override;

private:
    std::shared_ptr<WaylandDragWatcher> watcher;
    std::function<QColor()> accentColor;
    bool isRunning = false;
};
