// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/LayerShell.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <qpa/qplatformnativeinterface.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include <layer-shell-client-protocol.h>

namespace {

constexpr quint32 kVersion = 4;

struct Search {
    quint32 name = 0;
    quint32 version = 0;
};

} // namespace

std::unique_ptr<LayerShell> LayerShell::ofQt()
{
    if (!QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        return nullptr;
    auto *display = static_cast<wl_display *>(
        QGuiApplication::platformNativeInterface()->nativeResourceForIntegration("wl_display"));
    if (!display)
        return nullptr;
    static constexpr wl_registry_listener kListener = {
        .global =
            [](void *data, wl_registry *, quint32 name, const char *interface, quint32 version) {
                if (std::strcmp(interface, zwlr_layer_shell_v1_interface.name) == 0)
                    *static_cast<Search *>(data) = {name, version};
            },
        .global_remove = [](void *, wl_registry *, quint32) {},
    };
    WaylandQueue queue(wl_display_create_queue(display));
    auto *wrapper = static_cast<wl_display *>(wl_proxy_create_wrapper(display));
    wl_proxy_set_queue(reinterpret_cast<wl_proxy *>(wrapper), queue.get());
    wl_registry *registry = wl_display_get_registry(wrapper);
    wl_proxy_wrapper_destroy(wrapper);
    Search found;
    wl_registry_add_listener(registry, &kListener, &found);
    wl_display_roundtrip_queue(display, queue.get());
    zwlr_layer_shell_v1 *shell = nullptr;
    if (found.version != 0)
        shell = static_cast<zwlr_layer_shell_v1 *>(
            wl_registry_bind(registry, found.name, &zwlr_layer_shell_v1_interface, std::min(found.version, kVersion)));
    wl_registry_destroy(registry);
    if (!shell)
        return nullptr;
    return std::unique_ptr<LayerShell>(new LayerShell(display, std::move(queue), shell));
}

LayerShell::LayerShell(wl_display *qtDisplay, WaylandQueue eventQueue, zwlr_layer_shell_v1 *layerShell)
    : display(qtDisplay)
    , queue(std::move(eventQueue))
    , shell(layerShell)
{
}

LayerShell::~LayerShell()
{
    if (zwlr_layer_shell_v1_get_version(shell) >= ZWLR_LAYER_SHELL_V1_DESTROY_SINCE_VERSION)
        zwlr_layer_shell_v1_destroy(shell);
    else
        wl_proxy_destroy(reinterpret_cast<wl_proxy *>(shell));
}

zwlr_layer_surface_v1 *LayerShell::makeLayerSurface(wl_surface *surface, wl_output *output) const
{
    return zwlr_layer_shell_v1_get_layer_surface(shell, surface, output, ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY, "parklet");
}

bool LayerShell::wait() const
{
    return wl_display_roundtrip_queue(display, queue.get()) >= 0;
}

void LayerShell::handToQt(zwlr_layer_surface_v1 *layerSurface) const
{
    wl_proxy_set_queue(reinterpret_cast<wl_proxy *>(layerSurface), nullptr);
    // Its earlier events are still in the old queue.
    wl_display_dispatch_queue_pending(display, queue.get());
}

bool LayerShell::hasOnDemandKeyboard() const
{
    return zwlr_layer_shell_v1_get_version(shell) >=
           ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_ON_DEMAND_SINCE_VERSION;
}

wl_surface *LayerShell::surfaceOf(QWindow &window)
{
    return static_cast<wl_surface *>(
        QGuiApplication::platformNativeInterface()->nativeResourceForWindow("surface", &window));
}

wl_output *LayerShell::outputOf(QScreen &screen)
{
    return static_cast<wl_output *>(
        QGuiApplication::platformNativeInterface()->nativeResourceForScreen("output", &screen));
}
