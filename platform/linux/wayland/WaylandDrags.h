// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DragPasteboard.h"
#include "platform/DragSessions.h"
#include "platform/EventMonitors.h"
#include "platform/linux/wayland/WaylandDragWatcher.h"

#include <QColor>
#include <QObject>

#include <map>
#include <memory>

// What the watcher has read from the drag now in progress in another program.
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

// Tells of the mouse as far as drags in other programs are seen.
class WaylandEventMonitors : public EventMonitors {
public:
    explicit WaylandEventMonitors(std::shared_ptr<WaylandDragWatcher> dragWatcher);
    ~WaylandEventMonitors() override;

    std::optional<Token> add(quint32 mask, std::function<void()> handler) override;
    void remove(Token token) override;
    std::optional<Token> addNear(const QRectF &frame, std::function<void()> handler) override;

private:
    struct Monitor {
        quint32 mask;
        std::function<void()> handler;
    };

    void send(EventMask event);

    std::shared_ptr<WaylandDragWatcher> watcher;
    std::map<Token, std::shared_ptr<const Monitor>> monitors;
    Token lastToken = 0;
};

// Drags out of a panel by Qt's own drag. Wayland has no link: where one is offered a copy is, and a destination that
// asks its user, as Dolphin does, still links.
class WaylandDragSessions : public QObject, public DragSessions {
public:
    WaylandDragSessions(std::shared_ptr<WaylandDragWatcher> dragWatcher, std::function<QColor()> accent);

    void begin(QWidget &source, const QList<DraggingItem> &items, DragOperation offered, Ended ended) override;

private:
    std::shared_ptr<WaylandDragWatcher> watcher;
    std::function<QColor()> accentColor;
    bool isRunning = false;
};
