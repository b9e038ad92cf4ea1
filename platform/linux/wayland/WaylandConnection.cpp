// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/WaylandConnection.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include <poll.h>
#include <sys/mman.h>
#include <unistd.h>

#include <data-control-client-protocol.h>
#include <foreign-toplevels-client-protocol.h>
#include <layer-shell-client-protocol.h>
#include <viewporter-client-protocol.h>
#include <xdg-output-client-protocol.h>

namespace {

// The highest version of each protocol that we use. The compositor may have a lower one.
constexpr quint32 kCompositorVersion = 4;
constexpr quint32 kOutputVersion = 2;
constexpr quint32 kXdgOutputVersion = 2;
constexpr quint32 kDataDeviceVersion = 3;
constexpr quint32 kLayerShellVersion = 4;

constexpr int kConnectionLost = 1; // the program's exit code

template<typename T>
void bindGlobal(wl_registry *registry, quint32 name, const wl_interface &interface, quint32 version, T *&global)
{
    if (!global)
        global = static_cast<T *>(wl_registry_bind(registry, name, &interface, version));
}

} // namespace

void WaylandDestroy::operator()(wl_buffer *buffer) const
{
    wl_buffer_destroy(buffer);
}

void WaylandDestroy::operator()(wl_event_queue *queue) const
{
    wl_event_queue_destroy(queue);
}

void WaylandDestroy::operator()(wl_region *region) const
{
    wl_region_destroy(region);
}

void WaylandDestroy::operator()(wl_surface *surface) const
{
    wl_surface_destroy(surface);
}

void WaylandDestroy::operator()(zwlr_layer_surface_v1 *layerSurface) const
{
    zwlr_layer_surface_v1_destroy(layerSurface);
}

WaylandOutput::~WaylandOutput()
{
    if (extended)
        zxdg_output_v1_destroy(extended);
    if (proxy)
        wl_output_destroy(proxy);
}

std::shared_ptr<WaylandConnection> WaylandConnection::open()
{
    wl_display *display = wl_display_connect(nullptr);
    if (!display)
        return nullptr;
    std::shared_ptr<WaylandConnection> opened(new WaylandConnection(display));
    return opened->isComplete() ? opened : nullptr;
}

bool WaylandConnection::isOffered()
{
    wl_display *display = wl_display_connect(nullptr);
    if (!display)
        return false;
    struct Offered {
        bool layerShell = false;
        bool viewporter = false;
    } offered;
    static constexpr wl_registry_listener kListener = {
        .global =
            [](void *data, wl_registry *, quint32, const char *interface, quint32) {
                auto *found = static_cast<Offered *>(data);
                found->layerShell |= std::strcmp(interface, zwlr_layer_shell_v1_interface.name) == 0;
                found->viewporter |= std::strcmp(interface, wp_viewporter_interface.name) == 0;
            },
        .global_remove = [](void *, wl_registry *, quint32) {},
    };
    wl_registry *registry = wl_display_get_registry(display);
    wl_registry_add_listener(registry, &kListener, &offered);
    wl_display_roundtrip(display);
    wl_registry_destroy(registry);
    wl_display_disconnect(display);
    return offered.layerShell && offered.viewporter;
}

WaylandConnection::WaylandConnection(wl_display *opened)
    : connection(opened)
    , notifier(wl_display_get_fd(opened), QSocketNotifier::Read)
{
    static constexpr wl_registry_listener kListener = {
        .global =
            [](void *self, wl_registry *, quint32 name, const char *interface, quint32 version) {
                static_cast<WaylandConnection *>(self)->globalAppeared(name, interface, version);
            },
        .global_remove = [](void *self, wl_registry *,
                            quint32 name) { static_cast<WaylandConnection *>(self)->globalDisappeared(name); },
    };
    registry = wl_display_get_registry(connection);
    wl_registry_add_listener(registry, &kListener, this);
    // The first roundtrip gets the globals, the second the properties of the outputs.
    roundtrip();
    roundtrip();
    connect(&notifier, &QSocketNotifier::activated, this, [this] { read(); });
    if (auto *dispatcher = QAbstractEventDispatcher::instance())
        connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, this, [this] { wl_display_flush(connection); });
}

WaylandConnection::~WaylandConnection()
{
    allOutputs.clear();
    // The connection frees its proxies, and the compositor what belongs to them.
    notifier.setEnabled(false);
    wl_display_disconnect(connection);
}

bool WaylandConnection::isComplete() const
{
    return globals.compositor && globals.shm && globals.seat && globals.viewporter && globals.dataDeviceManager &&
           globals.layerShell && globals.outputManager;
}

void WaylandConnection::globalAppeared(quint32 name, const QByteArray &interface, quint32 version)
{
    if (interface == wl_compositor_interface.name)
        bindGlobal(registry, name, wl_compositor_interface, std::min(version, kCompositorVersion), globals.compositor);
    else if (interface == wl_shm_interface.name)
        bindGlobal(registry, name, wl_shm_interface, 1, globals.shm);
    else if (interface == wl_seat_interface.name)
        bindGlobal(registry, name, wl_seat_interface, 1, globals.seat);
    else if (interface == wp_viewporter_interface.name)
        bindGlobal(registry, name, wp_viewporter_interface, 1, globals.viewporter);
    else if (interface == wl_data_device_manager_interface.name)
        bindGlobal(registry, name, wl_data_device_manager_interface, std::min(version, kDataDeviceVersion),
                   globals.dataDeviceManager);
    else if (interface == zwlr_layer_shell_v1_interface.name)
        bindGlobal(registry, name, zwlr_layer_shell_v1_interface, std::min(version, kLayerShellVersion),
                   globals.layerShell);
    else if (interface == zwlr_data_control_manager_v1_interface.name)
        bindGlobal(registry, name, zwlr_data_control_manager_v1_interface, 1, globals.dataControlManager);
    else if (interface == zwlr_foreign_toplevel_manager_v1_interface.name)
        bindGlobal(registry, name, zwlr_foreign_toplevel_manager_v1_interface, 1, globals.foreignToplevelManager);
    else if (interface == wl_output_interface.name)
        addOutput(name, version);
    else if (interface == zxdg_output_manager_v1_interface.name) {
        bindGlobal(registry, name, zxdg_output_manager_v1_interface, std::min(version, kXdgOutputVersion),
                   globals.outputManager);
        extendOutputs();
    }
}

void WaylandConnection::globalDisappeared(quint32 name)
{
    const auto gone = std::ranges::find(allOutputs, name, [](const auto &output) { return output->name; });
    if (gone == allOutputs.end())
        return;
    const std::unique_ptr<WaylandOutput> output = std::move(*gone);
    allOutputs.erase(gone);
    if (onOutputGone)
        onOutputGone(*output);
}

void WaylandConnection::addOutput(quint32 name, quint32 version)
{
    auto output = std::make_unique<WaylandOutput>();
    output->name = name;
    bindGlobal(registry, name, wl_output_interface, std::min(version, kOutputVersion), output->proxy);
    output->onFrame = [this, changed = output.get()] {
        if (onOutput)
            onOutput(*changed);
    };
    allOutputs.push_back(std::move(output));
    extendOutputs();
}

// The output manager may be announced later than the outputs.
void WaylandConnection::extendOutputs()
{
    static constexpr zxdg_output_v1_listener kListener = {
        .logical_position = [](void *output, zxdg_output_v1 *, qint32 x,
                               qint32 y) { static_cast<WaylandOutput *>(output)->frame.moveTo(x, y); },
        .logical_size =
            [](void *data, zxdg_output_v1 *, qint32 width, qint32 height) {
                auto *output = static_cast<WaylandOutput *>(data);
                output->frame.setSize({width, height});
                output->onFrame();
            },
        .done = [](void *, zxdg_output_v1 *) {},
        .name = [](void *, zxdg_output_v1 *, const char *) {},
        .description = [](void *, zxdg_output_v1 *, const char *) {},
    };
    if (!globals.outputManager)
        return;
    for (const auto &output : allOutputs) {
        if (output->extended)
            continue;
        output->extended = zxdg_output_manager_v1_get_xdg_output(globals.outputManager, output->proxy);
        zxdg_output_v1_add_listener(output->extended, &kListener, output.get());
    }
}

WaylandBuffer WaylandConnection::transparentPixel() const
{
    constexpr int kBytes = 4;
    const int file = ::memfd_create("parklet-pixel", MFD_CLOEXEC);
    if (file < 0 || ::ftruncate(file, kBytes) != 0)
        qFatal("There is no memory for a pixel: %s", std::strerror(errno));
    wl_shm_pool *pool = wl_shm_create_pool(globals.shm, file, kBytes);
    WaylandBuffer buffer(wl_shm_pool_create_buffer(pool, 0, 1, 1, kBytes, WL_SHM_FORMAT_ARGB8888));
    wl_shm_pool_destroy(pool);
    ::close(file);
    return buffer;
}

WaylandRegion WaylandConnection::region(const QRegion &shape) const
{
    WaylandRegion region(wl_compositor_create_region(globals.compositor));
    for (const QRect &part : shape)
        wl_region_add(region.get(), part.x(), part.y(), part.width(), part.height());
    return region;
}

void WaylandConnection::roundtrip()
{
    if (wl_display_roundtrip(connection) < 0)
        fail();
}

void WaylandConnection::read()
{
    while (wl_display_prepare_read(connection) != 0) {
        if (wl_display_dispatch_pending(connection) < 0) {
            fail();
            return;
        }
    }
    wl_display_flush(connection);
    pollfd ready = {wl_display_get_fd(connection), POLLIN, 0};
    if (::poll(&ready, 1, 0) > 0) {
        if (wl_display_read_events(connection) < 0) {
            fail();
            return;
        }
    } else {
        wl_display_cancel_read(connection);
    }
    if (wl_display_dispatch_pending(connection) < 0)
        fail();
}

void WaylandConnection::fail()
{
    notifier.setEnabled(false);
    QCoreApplication::exit(kConnectionLost);
}
