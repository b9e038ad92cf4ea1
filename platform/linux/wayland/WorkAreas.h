// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/wayland/WaylandConnection.h"

#include <QObject>
#include <QRegion>
#include <QTimer>

struct wp_viewport;

// A transparent surface over the part of one output that bars leave free. By default it does not accept the pointer.
class TransparentSurface {
public:
    // `layer` is a layer of the layer shell protocol.
    TransparentSurface(WaylandConnection &connection, const WaylandOutput &output, quint32 layer);
    ~TransparentSurface();

    TransparentSurface(const TransparentSurface &) = delete;
    TransparentSurface &operator=(const TransparentSurface &) = delete;

    wl_surface *surface() const { return ownSurface.get(); }
    QSize size() const { return freeSize; }

    // Accepts the pointer in `shape`, in points from the surface's top left.
    void setInput(const QRegion &shape);

    std::function<void()> onResize;

private:
    void configured(quint32 serial, const QSize &size);

    WaylandConnection &connection;
    WaylandSurface ownSurface;
    wp_viewport *viewport;
    LayerSurface layerSurface;
    WaylandBuffer buffer;
    QSize freeSize;
};

// The free part of one output: its size, and a surface above it that can accept drags.
class WorkArea {
public:
    WorkArea(WaylandConnection &connection, const WaylandOutput &output);

    const WaylandOutput &output() const { return shownOn; }
    bool shows(const wl_surface *surface) const { return gate && gate->surface() == surface; }

    // The free part, as if it began at the top left of the output. A compositor does not tell where it really begins.
    QRect frame() const { return {shownOn.frame.topLeft(), measure.size()}; }

    // Accepts the pointer in `shape`, in points of the desktop, above all windows. Accepts nothing when `shape` is
    // empty.
    void open(const QRegion &shape);

    std::function<void()> onResize;

private:
    WaylandConnection &connection;
    const WaylandOutput &shownOn;
    TransparentSurface measure;
    // Exists around a drag only, because a compositor cannot show a full-screen window directly while a surface is
    // above it.
    std::unique_ptr<TransparentSurface> gate;
    QTimer removal;
};

// The work areas of all outputs.
class WorkAreas : public QObject {
public:
    explicit WorkAreas(std::shared_ptr<WaylandConnection> connection);
    ~WorkAreas() override;

    const std::vector<std::unique_ptr<WorkArea>> &all() const { return areas; }

    // The area whose surface `surface` is, or null.
    WorkArea *areaOf(const wl_surface *surface) const;

    // Opens all areas in `shape`. Then the compositor reports the pointer's next motion there to this connection's
    // seat.
    void open(const QRegion &shape);
    void close() { open({}); }

    // The area of the focused output. Null when the compositor names none.
    WorkArea *focused() const;

    // The outputs or their free parts have changed.
    std::function<void()> onChange;

private:
    void changed();

    std::shared_ptr<WaylandConnection> wayland;
    std::vector<std::unique_ptr<WorkArea>> areas;
};
