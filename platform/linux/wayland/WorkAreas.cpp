// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/WorkAreas.h"

#include <algorithm>
#include <chrono>

#include <layer-shell-client-protocol.h>
#include <viewporter-client-protocol.h>

using namespace std::chrono_literals;

namespace {

constexpr quint32 kAllEdges = ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP | ZWLR_LAYER_SURFACE_V1_ANCHOR_BOTTOM |
                              ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT | ZWLR_LAYER_SURFACE_V1_ANCHOR_RIGHT;

constexpr auto kRemoval = 1s;

// The number of roundtrips after which the compositor must have told on which output a surface is.
constexpr int kMostRoundtrips = 4;

// A copy of a proxy. Objects that it makes send their events to a queue of their own.
template<typename T>
class OnQueue {
public:
    OnQueue(T *proxy, wl_event_queue *queue)
        : wrapper(static_cast<T *>(wl_proxy_create_wrapper(proxy)))
    {
        wl_proxy_set_queue(reinterpret_cast<wl_proxy *>(wrapper), queue);
    }
    ~OnQueue() { wl_proxy_wrapper_destroy(wrapper); }

    OnQueue(const OnQueue &) = delete;
    OnQueue &operator=(const OnQueue &) = delete;

    T *get() const { return wrapper; }

private:
    T *wrapper;
};

} // namespace

TransparentSurface::TransparentSurface(WaylandConnection &wayland, const WaylandOutput &output, quint32 layer)
    : connection(wayland)
    , ownSurface(wl_compositor_create_surface(wayland.compositor()))
    , viewport(wp_viewporter_get_viewport(wayland.viewporter(), ownSurface.get()))
    , layerSurface(zwlr_layer_shell_v1_get_layer_surface(wayland.layerShell(), ownSurface.get(), output.proxy, layer,
                                                         "parklet-work-area"))
    , freeSize(output.frame.size())
{
    static constexpr zwlr_layer_surface_v1_listener kListener = {
        .configure =
            [](void *self, zwlr_layer_surface_v1 *, quint32 serial, quint32 width, quint32 height) {
                static_cast<TransparentSurface *>(self)->configured(serial, QSize(int(width), int(height)));
            },
        // The output is removed, and this object with it.
        .closed = [](void *, zwlr_layer_surface_v1 *) {},
    };
    zwlr_layer_surface_v1_add_listener(layerSurface.get(), &kListener, this);
    zwlr_layer_surface_v1_set_anchor(layerSurface.get(), kAllEdges);
    zwlr_layer_surface_v1_set_exclusive_zone(layerSurface.get(), 0);
    setInput({});
}

TransparentSurface::~TransparentSurface()
{
    wp_viewport_destroy(viewport);
}

void TransparentSurface::setInput(const QRegion &shape)
{
    wl_surface_set_input_region(ownSurface.get(), connection.region(shape).get());
    wl_surface_commit(ownSurface.get());
    wl_display_flush(connection.display());
}

void TransparentSurface::configured(quint32 serial, const QSize &size)
{
    zwlr_layer_surface_v1_ack_configure(layerSurface.get(), serial);
    const bool isNew = size != freeSize;
    // Some compositors send this event after every commit of any surface.
    if (buffer && !isNew)
        return;
    freeSize = size;
    wp_viewport_set_destination(viewport, std::max(size.width(), 1), std::max(size.height(), 1));
    if (!buffer) {
        buffer = connection.transparentPixel();
        wl_surface_attach(ownSurface.get(), buffer.get(), 0, 0);
        wl_surface_damage_buffer(ownSurface.get(), 0, 0, 1, 1);
    }
    wl_surface_commit(ownSurface.get());
    if (isNew && onResize)
        onResize();
}

WorkArea::WorkArea(WaylandConnection &wayland, const WaylandOutput &output)
    : connection(wayland)
    , shownOn(output)
    , measure(wayland, output, ZWLR_LAYER_SHELL_V1_LAYER_BACKGROUND)
{
    measure.onResize = [this] {
        if (onResize)
            onResize();
    };
    // Remove the surface later: the drag that it has just reported may still be over it.
    removal.setSingleShot(true);
    removal.setInterval(kRemoval);
    QObject::connect(&removal, &QTimer::timeout, &removal, [this] { gate.reset(); });
}

void WorkArea::open(const QRegion &shape)
{
    const QRegion local = (shape & frame()).translated(-frame().topLeft());
    if (local.isEmpty()) {
        if (gate && !removal.isActive()) {
            gate->setInput({});
            removal.start();
        }
        return;
    }
    removal.stop();
    if (!gate)
        gate = std::make_unique<TransparentSurface>(connection, shownOn, ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY);
    gate->setInput(local);
}

WorkAreas::WorkAreas(std::shared_ptr<WaylandConnection> connection)
    : wayland(std::move(connection))
{
    wayland->onOutput = [this](const WaylandOutput &output) {
        const auto known = std::ranges::find(areas, &output, [](const auto &area) { return &area->output(); });
        if (known == areas.end()) {
            areas.push_back(std::make_unique<WorkArea>(*wayland, output));
            areas.back()->onResize = [this] { changed(); };
        }
        changed();
    };
    wayland->onOutputGone = [this](const WaylandOutput &output) {
        std::erase_if(areas, [&output](const auto &area) { return &area->output() == &output; });
        changed();
    };
    for (const auto &output : wayland->outputs())
        wayland->onOutput(*output);
    // After this, the sizes are known.
    wayland->roundtrip();
}

WorkAreas::~WorkAreas()
{
    wayland->onOutput = nullptr;
    wayland->onOutputGone = nullptr;
}

WorkArea *WorkAreas::areaOf(const wl_surface *surface) const
{
    const auto found = std::ranges::find_if(areas, [surface](const auto &area) { return area->shows(surface); });
    return found == areas.end() ? nullptr : found->get();
}

void WorkAreas::open(const QRegion &shape)
{
    for (const auto &area : areas)
        area->open(shape);
}

// The compositor puts a surface without a named output on the focused one, and reports which that is.
WorkArea *WorkAreas::focused() const
{
    struct Scout {
        zwlr_layer_surface_v1 *layerSurface = nullptr;
        bool isConfigured = false;
        wl_output *output = nullptr;
    } scout;
    static constexpr zwlr_layer_surface_v1_listener kLayerListener = {
        .configure =
            [](void *data, zwlr_layer_surface_v1 *layerSurface, quint32 serial, quint32, quint32) {
                zwlr_layer_surface_v1_ack_configure(layerSurface, serial);
                static_cast<Scout *>(data)->isConfigured = true;
            },
        .closed = [](void *, zwlr_layer_surface_v1 *) {},
    };
    static constexpr wl_surface_listener kSurfaceListener = {
        .enter = [](void *data, wl_surface *, wl_output *output) { static_cast<Scout *>(data)->output = output; },
        .leave = [](void *, wl_surface *, wl_output *) {},
    };

    const WaylandQueue queue(wl_display_create_queue(wayland->display()));
    const auto wait = [&] { return wl_display_roundtrip_queue(wayland->display(), queue.get()) >= 0; };
    const OnQueue compositor(wayland->compositor(), queue.get());
    const OnQueue shell(wayland->layerShell(), queue.get());
    const WaylandBuffer buffer = wayland->transparentPixel();
    const WaylandSurface surface(wl_compositor_create_surface(compositor.get()));
    const LayerSurface layerSurface(zwlr_layer_shell_v1_get_layer_surface(
        shell.get(), surface.get(), nullptr, ZWLR_LAYER_SHELL_V1_LAYER_BACKGROUND, "parklet-focus"));
    wl_surface_add_listener(surface.get(), &kSurfaceListener, &scout);
    zwlr_layer_surface_v1_add_listener(layerSurface.get(), &kLayerListener, &scout);
    zwlr_layer_surface_v1_set_size(layerSurface.get(), 1, 1);
    wl_surface_set_input_region(surface.get(), wayland->region({}).get());
    wl_surface_commit(surface.get());
    if (!wait() || !scout.isConfigured)
        return nullptr;
    wl_surface_attach(surface.get(), buffer.get(), 0, 0);
    wl_surface_commit(surface.get());
    for (int i = 0; i < kMostRoundtrips && !scout.output; ++i) {
        if (!wait())
            return nullptr;
    }
    const auto found = std::ranges::find(areas, scout.output, [](const auto &area) { return area->output().proxy; });
    return found == areas.end() ? nullptr : found->get();
}

void WorkAreas::changed()
{
    if (onChange)
        onChange();
}
