// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/wayland/WaylandConnection.h"

#include <QObject>
#include <QRegion>
#include <QTimer>

struct wp_viewport;

// A transparent surface over the part of one output that bars leave free. The pointer passes through it.
class TransparentSurface {
public:
    // `layer` as the layer shell counts them.
    TransparentSurface(WaylandConnection &connection, const WaylandOutput &output, quint32 layer);
    ~TransparentSurface();

    TransparentSurface(const TransparentSurface &) = delete;
    TransparentSurface &operator=(const TransparentSurface &) = delete;

    wl_surface *surface() const { return ownSurface.get(); }
    QSize size() const { return freeSize; }

    // Takes the pointer in `shape`, counted from the surface's top left.
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

// The free part of one output: how large it is, and a gate over it for drags.
class WorkArea {
public:
    WorkArea(WaylandConnection &connection, const WaylandOutput &output);

    const WaylandOutput &output() const { return shownOn; }
    bool shows(const wl_surface *surface) const { return gate && gate->surface() == surface; }

    // The free part. No client is told where it begins; places are counted from its top left, which stands at that of
    // the output.
    QRect frame() const { return {shownOn.frame.topLeft(), measure.size()}; }

    // Takes the pointer in `shape`, in points of the desktop, above all windows; nowhere when it is empty.
    void open(const QRegion &shape);

    std::function<void()> onResize;

private:
    WaylandConnection &connection;
    const WaylandOutput &shownOn;
    TransparentSurface measure;
    // What lies above full-screen windows keeps a compositor from showing those directly, so it is there only around a
    // drag.
    std::unique_ptr<TransparentSurface> gate;
    QTimer removal;
};

// The work areas of all outputs.
class WorkAreas : public QObject {
public:
    explicit WorkAreas(std::shared_ptr<WaylandConnection> connection);
    ~WorkAreas() override;

    const std::vector<std::unique_ptr<WorkArea>> &all() const { return areas; }

    // The one whose gate is that surface, or null.
    WorkArea *areaOf(const wl_surface *surface) const;

    // Opens every area in that part of the desktop; the pointer's next motion there is told to the clients of the
    // connection's seat.
    void open(const QRegion &shape);
    void close() { open({}); }

    // The area of the output that has the focus, or null when the compositor names none.
    WorkArea *focused() const;

    // Outputs or their free parts changed.
    std::function<void()> onChange;

private:
    void changed();

    std::shared_ptr<WaylandConnection> wayland;
    std::vector<std::unique_ptr<WorkArea>> areas;
};
