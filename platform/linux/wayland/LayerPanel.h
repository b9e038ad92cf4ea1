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

// What the compositor tells a panel of the pointer.
enum class PanelEvent { Pointer, PointerLeft, DragOver, DragLeft, Dropped };

// The compositor's side of one floating panel: a surface in the topmost layer, placed on its output from the top left
// of what bars leave free. It exists while the panel is visible.
class LayerPanel : public QObject {
    Q_OBJECT

public:
    using FreeOrigin = std::function<QPoint(const QScreen &screen)>;

    // `freeOrigin` answers where the free part of a screen begins, in the points in which windows are placed.
    LayerPanel(QWidget &panelWindow, const LayerShell &layerShell, FreeOrigin freeOrigin);
    ~LayerPanel() override;

    QWidget *widget() const { return window; }

    void orderFront();
    void orderOut();
    void setAlpha(double alpha);

    // Whether key presses go to the panel.
    void setKeyboard(bool wanted);

    std::function<void(PanelEvent event, const QPointF &position)> onEvent;
    // A key was pressed while the panel had the keyboard; answers whether it is used up.
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
