// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPoint>
#include <QRect>
#include <QRegion>
#include <QSocketNotifier>
#include <QString>

#include <wayland-client.h>

#include <functional>
#include <memory>
#include <vector>

struct wp_viewporter;
struct zwlr_data_control_manager_v1;
struct zwlr_foreign_toplevel_manager_v1;
struct zwlr_layer_shell_v1;
struct zwlr_layer_surface_v1;
struct zxdg_output_manager_v1;
struct zxdg_output_v1;

// Frees the objects that belong to the receiver.
struct WaylandDestroy {
    void operator()(wl_buffer *buffer) const;
    void operator()(wl_event_queue *queue) const;
    void operator()(wl_region *region) const;
    void operator()(wl_surface *surface) const;
    void operator()(zwlr_layer_surface_v1 *layerSurface) const;
};
using WaylandBuffer = std::unique_ptr<wl_buffer, WaylandDestroy>;
using WaylandQueue = std::unique_ptr<wl_event_queue, WaylandDestroy>;
using WaylandRegion = std::unique_ptr<wl_region, WaylandDestroy>;
using WaylandSurface = std::unique_ptr<wl_surface, WaylandDestroy>;
using LayerSurface = std::unique_ptr<zwlr_layer_surface_v1, WaylandDestroy>;

// One output (screen) of the compositor, in points of the desktop (origin at the top left).
struct WaylandOutput {
    ~WaylandOutput();

    quint32 name = 0; // its number in the registry
    wl_output *proxy = nullptr;
    zxdg_output_v1 *extended = nullptr;
    QRect frame;
    std::function<void()> onFrame;
};

// Our own connection to the compositor, besides Qt's. Qt receives no events of its surfaces, and a roundtrip on it
// handles no event of Qt's. Its events arrive on the main thread. When the connection is lost, the program ends.
class WaylandConnection : public QObject {
public:
    // Null when there is no compositor, or when it lacks a protocol that native panels need.
    static std::shared_ptr<WaylandConnection> open();

    // Whether open() would succeed. Needs no QApplication.
    static bool isOffered();

    ~WaylandConnection() override;

    wl_display *display() const { return connection; }
    wl_compositor *compositor() const { return globals.compositor; }
    wl_seat *seat() const { return globals.seat; }
    wp_viewporter *viewporter() const { return globals.viewporter; }
    wl_data_device_manager *dataDeviceManager() const { return globals.dataDeviceManager; }
    zwlr_layer_shell_v1 *layerShell() const { return globals.layerShell; }
    // Null when the compositor does not offer it.
    zwlr_data_control_manager_v1 *dataControlManager() const { return globals.dataControlManager; }
    zwlr_foreign_toplevel_manager_v1 *foreignToplevelManager() const { return globals.foreignToplevelManager; }

    const std::vector<std::unique_ptr<WaylandOutput>> &outputs() const { return allOutputs; }

    // Makes a transparent buffer of one pixel. Each surface needs a buffer of its own.
    WaylandBuffer transparentPixel() const;

    WaylandRegion region(const QRegion &shape) const;

    // Waits until the compositor has handled all requests so far, and handles the events that arrive until then.
    void roundtrip();

    // An output was added or changed its frame; an output is about to be removed.
    std::function<void(const WaylandOutput &output)> onOutput;
    std::function<void(const WaylandOutput &output)> onOutputGone;

private:
    struct Globals {
        wl_compositor *compositor = nullptr;
        wl_shm *shm = nullptr;
        wl_seat *seat = nullptr;
        wp_viewporter *viewporter = nullptr;
        wl_data_device_manager *dataDeviceManager = nullptr;
        zwlr_layer_shell_v1 *layerShell = nullptr;
        zwlr_data_control_manager_v1 *dataControlManager = nullptr;
        zwlr_foreign_toplevel_manager_v1 *foreignToplevelManager = nullptr;
        zxdg_output_manager_v1 *outputManager = nullptr;
    };

    explicit WaylandConnection(wl_display *opened);

    bool isComplete() const;
    void globalAppeared(quint32 name, const QByteArray &interface, quint32 version);
    void globalDisappeared(quint32 name);
    void addOutput(quint32 name, quint32 version);
    void extendOutputs();
    void read();
    void fail();

    wl_display *connection;
    wl_registry *registry = nullptr;
    Globals globals;
    std::vector<std::unique_ptr<WaylandOutput>> allOutputs;
    QSocketNotifier notifier;
};
