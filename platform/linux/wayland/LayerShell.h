// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/wayland/WaylandConnection.h"

#include <memory>

class QScreen;
class QWindow;
struct zwlr_layer_surface_v1;

// The protocol wlr-layer-shell on Qt's connection, on which Qt's surfaces exist.
class LayerShell {
public:
    // Null when Qt does not run on Wayland or the compositor has no layer shell.
    static std::unique_ptr<LayerShell> ofQt();

    ~LayerShell();

    // Makes `surface` a layer surface, whose events go to a separate queue until handToQt().
    zwlr_layer_surface_v1 *makeLayerSurface(wl_surface *surface, wl_output *output) const;

    // Waits until the compositor has handled all requests so far. Handles no events of Qt's queue. False when the
    // connection is lost.
    bool wait() const;

    // From now on, Qt's main loop handles the events of `layerSurface`.
    void handToQt(zwlr_layer_surface_v1 *layerSurface) const;

    // Whether the protocol has keyboard interactivity on demand.
    bool hasOnDemandKeyboard() const;

    static wl_surface *surfaceOf(QWindow &window);
    static wl_output *outputOf(QScreen &screen);

private:
    LayerShell(wl_display *qtDisplay, WaylandQueue eventQueue, zwlr_layer_shell_v1 *layerShell);

    wl_display *display;
    WaylandQueue queue;
    zwlr_layer_shell_v1 *shell;
};
