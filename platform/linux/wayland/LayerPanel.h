// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FloatingPanels.h"
#include "platform/linux/wayland/LayerShell.h"

#include <QObject>
#include <QPointer>
#include <QWidget>

#include <functional>

class QGraphicsOpacityEffect;
struct zwlr_layer_surface_v1;

// What the compositor reports about the pointer on a panel.
enum class PanelEvent { Pointer, PointerLeft, DragOver, DragLeft, Dropped };

// One floating panel as a layer surface: a surface in the topmost layer, placed on its output from the top left of the
// area that bars leave free. The surface exists while the panel is visible.
class LayerPanel : public QObject {
    Q_OBJECT

public:
    using FreeOrigin = std::function<QPoint(const QScreen &screen)>;

    // `freeOrigin` returns the top left of the free area of a screen, in points of the desktop (origin at the top
    // left).
    LayerPanel(QWidget &panelWindow, const LayerShell &layerShell, FreeOrigin freeOrigin);
    ~LayerPanel() override;

    QWidget *widget() const { return window; }

    void orderFront();
    void orderOut();
    void setAlpha(double alpha);

    // Lets the panel have the keyboard focus, or takes it away.
    void setKeyboard(bool wanted);

    std::function<void(PanelEvent event, const QPointF &position)> onEvent;
    // Called for each key press while the panel has the keyboard. Returns true when the event is handled.
    std::function<bool(QKeyEvent &event)> onKey;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private slots:
    void assumeRole();
    void giveUpRole();

private:
    void prepare();
    void place();
    void follow();
    void reopen();
    bool windowEvent(QEvent &event);
    QScreen *targetScreen() const;

    QPointer<QWidget> window;
    const LayerShell &shell;
    FreeOrigin originOf;
    zwlr_layer_surface_v1 *layerSurface = nullptr;
    wl_surface *surface = nullptr;
    QPointer<QScreen> shownOn;
    QPointer<QGraphicsOpacityEffect> opacity;
    bool isConfigured = false;
    bool hasKeyboard = false;
};
