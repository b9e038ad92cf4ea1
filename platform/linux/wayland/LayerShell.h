// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/wayland/WaylandConnection.h"

#include <memory>

class QScreen;
class QWindow;
struct zwlr_layer_surface_v1;

// The layer shell on Qt's own connection, where the surfaces of its windows are.
class LayerShell {
public:
    // Null where Qt does not run on Wayland or the compositor has no layer shell.
    static std::unique_ptr<LayerShell> ofQt();

    ~LayerShell();

    // Makes a layer surface of `surface` on a queue that only waitFor() handles.
    zwlr_layer_surface_v1 *makeLayerSurface(wl_surface *surface, wl_output *output) const;

    // Waits until the compositor has handled all requests so far; handles no event of Qt's. False when it has gone.
    bool wait() const;

    // From now on Qt's main loop handles the events of `layerSurface`.
    void handToQt(zwlr_layer_surface_v1 *layerSurface) const;

    // Whether keyboard interactivity can be asked for on demand.
    bool hasOnDemandKeyboard() const;

    static wl_surface *surfaceOf(QWindow &window);
    static wl_output *outputOf(QScreen &screen);

private:
    LayerShell(wl_display *qtDisplay, WaylandQueue eventQueue, zwlr_layer_shell_v1 *layerShell);

    wl_display *display;
    WaylandQueue queue;
    zwlr_layer_shell_v1 *shell;
};
