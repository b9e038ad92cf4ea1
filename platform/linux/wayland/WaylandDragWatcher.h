// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/wayland/SeatDrags.h"
#include "platform/linux/wayland/WorkAreas.h"
#include "platform/linux/x11/XcbConnection.h"

#include <QObject>
#include <QPointer>
#include <QSocketNotifier>
#include <QTimer>

#include <memory>
#include <optional>

// Watches a Wayland session for drags in other programs. A compositor reports a drag to a client only while it is over
// the client's surface. So the beginning of a drag is noticed on the session's X server (XWayland), where the owner of
// XdndSelection changes. Then the work areas accept the pointer until the drag has entered one of them, which tells
// what it carries. The drag continues undisturbed. Nothing reports its end when it ends elsewhere.
class WaylandDragWatcher : public QObject {
public:
    // With a null X connection, a drag is noticed only when it enters a panel.
    WaylandDragWatcher(std::shared_ptr<WaylandConnection> connection, std::shared_ptr<WorkAreas> workAreas,
                       std::shared_ptr<XcbConnection> xConnection);
    ~WaylandDragWatcher() override;

    // Begins to watch, until the destructor.
    void start();

    qint64 changeCount() const { return count; }
    const QList<QUrl> &fileURLs() const { return files; }

    // Drags out of this program are ignored.
    void setOwnDrag(bool isInProgress);

    // Reports the drag when it enters `area`, in points of the desktop. An empty area ends that.
    void attend(const QRectF &area);
    // A panel has shown. Removes all surfaces above it.
    void panelShown();

    // Forwarded from a panel: a drag has entered it, has left it, or was dropped on it; or the pointer is over it
    // without a drag.
    void draggedOverPanel();
    void leftPanel();
    void droppedOnPanel();
    void pointerOverPanel();

    // The position of a drag is known, in points of the desktop.
    std::function<void(const QPointF &position)> onPointer;
    // A drag has moved, or its contents have become known.
    std::function<void()> onDragged;
    // Called once for each drag for which onDragged was called.
    std::function<void()> onEnded;

private:
    enum class State { Idle, Probing, Reading, Dragging };

    void announceSelf();
    void handle(const xcb_generic_event_t &event);
    void dragBegins();
    void entered(wl_surface *surface, const QPointF &position, DragOffer *offer);
    void moved(const QPointF &position);
    void left();
    void pointerEntered();
    void readMore();
    void finishReading(const QList<QUrl> &urls);
    void know(const QList<QUrl> &urls);
    void end();
    void forget();
    void waitForEnd();
    QPointF onDesktop(const QPointF &position) const;

    std::shared_ptr<WaylandConnection> wayland;
    std::shared_ptr<WorkAreas> areas;
    std::shared_ptr<XcbConnection> xcb;
    XcbConnection::Subscription subscription;
    xcb_window_t seatOpener = XCB_NONE;
    xcb_atom_t selection = XCB_ATOM_NONE;
    std::unique_ptr<SeatDrags> seat;
    State state = State::Idle;
    bool ownDrag = false;
    bool isOverPanel = false;
    QRect attended;
    wl_surface *hovered = nullptr;
    std::unique_ptr<QSocketNotifier> pipe;
    QByteArray data;
    qint64 count = 0;
    QList<QUrl> files;
    QTimer limit; // the time limit of the current state
};
