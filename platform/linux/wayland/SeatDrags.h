// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/wayland/WaylandConnection.h"

#include <QList>
#include <QPointF>
#include <QUrl>

#include <memory>
#include <optional>

// The contents of a drag while it is over a surface of our own connection.
class DragOffer {
public:
    explicit DragOffer(wl_data_offer *offered);
    ~DragOffer();

    DragOffer(const DragOffer &) = delete;
    DragOffer &operator=(const DragOffer &) = delete;

    bool offers(const QByteArray &type) const { return types.contains(type); }

    // Refuses a drop.
    void refuse(quint32 serial);

    // Requests the data of this type. Returns the descriptor of a pipe from which to read it, or -1 when there is no
    // pipe.
    int receive(const char *type);

private:
    wl_data_offer *offer;
    QList<QByteArray> types;
};

// The pointer of our own connection's seat, and the drag in progress.
class SeatDrags {
public:
    explicit SeatDrags(WaylandConnection &connection);
    ~SeatDrags();

    SeatDrags(const SeatDrags &) = delete;
    SeatDrags &operator=(const SeatDrags &) = delete;

    // A drag has entered a surface. The offer exists until the drag leaves or is dropped.
    std::function<void(wl_surface *surface, const QPointF &position, DragOffer *offer)> onEnter;
    std::function<void(const QPointF &position)> onMotion;
    std::function<void()> onLeave;
    std::function<void()> onDrop;
    // The pointer has entered a surface without a drag.
    std::function<void(wl_surface *surface, const QPointF &position)> onPointer;

private:
    void offered(wl_data_offer *offer);
    void entered(quint32 serial, wl_surface *surface, const QPointF &position, wl_data_offer *offer);

    wl_data_device *device;
    wl_pointer *pointer;
    std::unique_ptr<DragOffer> latest; // announced; the next event tells what it belongs to
    std::unique_ptr<DragOffer> dragged;
    std::unique_ptr<DragOffer> copied;
};
