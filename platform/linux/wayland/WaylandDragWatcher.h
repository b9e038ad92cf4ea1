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

// Watches a Wayland session for drags in other programs. A compositor tells a client of a drag only while that is over
// its surface. That one begins is seen on the X server that the session has for older programs, where the drag's owner
// is announced; the work areas then take the pointer until the drag has come over one of them, which tells what it
// carries. It goes on undisturbed, and once it is elsewhere nothing tells when it ends.
class WaylandDragWatcher : public QObject {
public:
    // With a null X connection nothing is seen of a drag before it is over a panel.
    WaylandDragWatcher(std::shared_ptr<WaylandConnection> connection, std::shared_ptr<WorkAreas> workAreas,
                       std::shared_ptr<XcbConnection> xConnection);
    ~WaylandDragWatcher() override;

    // Begins to watch; once watching it stays so.
    void start();

    qint64 changeCount() const { return count; }
    const QList<QUrl> &fileURLs() const { return files; }

    // Drags out of this program are not watched.
    void setOwnDrag(bool isInProgress);

    // Hears of a drag in `area`, in points of the desktop, as it comes there; of none when it is empty.
    void attend(const QRectF &area);
    // A panel has come; nothing may lie in the way to it.
    void panelShown();

    // What a panel is told: a drag is over it, has left it or been dropped there; the pointer is over it without one.
    void draggedOverPanel();
    void leftPanel();
    void droppedOnPanel();
    void pointerOverPanel();

    // A drag's place became known.
    std::function<void(const QPointF &position)> onPointer;
    // What a drag carries became known, or it moved.
    std::function<void()> onDragged;
    // Once for every drag that onDragged was called for.
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
    void finishReading(bool complete);
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
    QTimer limit; // of the present state
};
