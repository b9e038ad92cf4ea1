// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/LayerPanel.h"

#include <QDragMoveEvent>
#include <QEvent>
#include <QGraphicsOpacityEffect>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QWindow>

#include <qpa/qplatformwindow.h>

#include <algorithm>
#include <utility>

#include <layer-shell-client-protocol.h>

LayerPanel::LayerPanel(QWidget &panelWindow, const LayerShell &layerShell, FreeOrigin freeOrigin)
    : window(&panelWindow)
    , shell(layerShell)
    , originOf(std::move(freeOrigin))
    , opacity(new QGraphicsOpacityEffect(&panelWindow))
{
    // Qt does not place a window with this flag.
    panelWindow.setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint |
                               Qt::WindowDoesNotAcceptFocus);
    panelWindow.setAttribute(Qt::WA_TranslucentBackground);
    panelWindow.setAttribute(Qt::WA_ShowWithoutActivating);
    opacity->setEnabled(false);
    panelWindow.setGraphicsEffect(opacity);
    panelWindow.installEventFilter(this);
}

LayerPanel::~LayerPanel()
{
    giveUpRole();
}

// Creates the native window, and follows the surface from then on.
void LayerPanel::prepare()
{
    if (window->windowHandle() && window->windowHandle()->handle())
        return;
    window->winId();
    window->windowHandle()->installEventFilter(this);
    auto *native = dynamic_cast<QObject *>(window->windowHandle()->handle());
    connect(native, SIGNAL(wlSurfaceCreated()), this, SLOT(assumeRole()));
    connect(native, SIGNAL(wlSurfaceDestroyed()), this, SLOT(giveUpRole()));
}

void LayerPanel::orderFront()
{
    if (!window)
        return;
    prepare();
    if (window->isVisible()) {
        follow();
        return;
    }
    // Qt makes the first surface with the native window, and each further one when the panel shows.
    if (!layerSurface && LayerShell::surfaceOf(*window->windowHandle()))
        assumeRole();
    window->show();
}

void LayerPanel::orderOut()
{
    if (window)
        window->hide();
}

void LayerPanel::setAlpha(double alpha)
{
    if (!opacity)
        return;
    opacity->setOpacity(alpha);
    opacity->setEnabled(alpha < 1);
}

void LayerPanel::setKeyboard(bool wanted)
{
    if (wanted == hasKeyboard)
        return;
    hasKeyboard = wanted;
    if (!layerSurface)
        return;
    zwlr_layer_surface_v1_set_keyboard_interactivity(layerSurface,
                                                     wanted ? ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_EXCLUSIVE
                                                            : ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_NONE);
    wl_surface_commit(surface);
}

void LayerPanel::assumeRole()
{
    static constexpr zwlr_layer_surface_v1_listener kListener = {
        .configure =
            [](void *data, zwlr_layer_surface_v1 *layer, quint32 serial, quint32, quint32) {
                auto *self = static_cast<LayerPanel *>(data);
                zwlr_layer_surface_v1_ack_configure(layer, serial);
                // Qt may have nothing to draw, but some compositors move a surface only after a commit.
                if (self->isConfigured)
                    wl_surface_commit(self->surface);
                self->isConfigured = true;
            },
        .closed =
            [](void *data, zwlr_layer_surface_v1 *) {
                // The output was removed. The screens report that too, and the panel may already have a new place.
                auto *self = static_cast<LayerPanel *>(data);
                QMetaObject::invokeMethod(
                    self, [self] { self->reopen(); }, Qt::QueuedConnection);
            },
    };
    shownOn = targetScreen();
    surface = LayerShell::surfaceOf(*window->windowHandle());
    if (!surface || !shownOn)
        return;
    layerSurface = shell.makeLayerSurface(surface, LayerShell::outputOf(*shownOn));
    zwlr_layer_surface_v1_add_listener(layerSurface, &kListener, this);
    zwlr_layer_surface_v1_set_anchor(layerSurface,
                                     ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP | ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT);
    zwlr_layer_surface_v1_set_exclusive_zone(layerSurface, 0);
    place();
    isConfigured = false;
    wl_surface_commit(surface);
    while (!isConfigured && shell.wait()) {
    }
    shell.handToQt(layerSurface);
}

void LayerPanel::giveUpRole()
{
    if (layerSurface)
        zwlr_layer_surface_v1_destroy(std::exchange(layerSurface, nullptr));
    surface = nullptr;
    hasKeyboard = false;
}

void LayerPanel::place()
{
    const QRect frame = window->geometry();
    const QPoint offset = frame.topLeft() - originOf(*shownOn);
    // A size of zero would mean the whole free area.
    zwlr_layer_surface_v1_set_size(layerSurface, quint32(std::max(frame.width(), 1)),
                                   quint32(std::max(frame.height(), 1)));
    zwlr_layer_surface_v1_set_margin(layerSurface, offset.y(), 0, 0, offset.x());
}

// Applies a new frame of the panel.
void LayerPanel::follow()
{
    if (!layerSurface)
        return;
    if (shownOn != targetScreen()) {
        reopen();
        return;
    }
    place();
    wl_surface_commit(surface);
}

// A surface cannot change its output, so another output needs a new surface.
void LayerPanel::reopen()
{
    if (!window || !window->isVisible())
        return;
    window->hide();
    window->show();
}

bool LayerPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == window) {
        if (event->type() == QEvent::Move || event->type() == QEvent::Resize)
            follow();
    } else if (window && watched == window->windowHandle()) {
        return windowEvent(*event);
    }
    return QObject::eventFilter(watched, event);
}

bool LayerPanel::windowEvent(QEvent &event)
{
    const auto tell = [this](PanelEvent what, const QPointF &position) {
        if (onEvent)
            onEvent(what, QPointF(window->geometry().topLeft()) + position);
    };
    switch (event.type()) {
    case QEvent::MouseMove:
    case QEvent::MouseButtonPress:
        tell(PanelEvent::Pointer, static_cast<QMouseEvent &>(event).position());
        break;
    case QEvent::Enter:
        tell(PanelEvent::Pointer, static_cast<QEnterEvent &>(event).position());
        break;
    case QEvent::Leave:
        tell(PanelEvent::PointerLeft, {});
        break;
    case QEvent::DragEnter:
    case QEvent::DragMove:
        tell(PanelEvent::DragOver, static_cast<QDragMoveEvent &>(event).position());
        break;
    case QEvent::DragLeave:
        tell(PanelEvent::DragLeft, {});
        break;
    case QEvent::Drop:
        tell(PanelEvent::Dropped, static_cast<QDropEvent &>(event).position());
        break;
    case QEvent::KeyPress:
        return onKey && onKey(static_cast<QKeyEvent &>(event));
    default:
        break;
    }
    return false;
}

QScreen *LayerPanel::targetScreen() const
{
    QScreen *screen = QGuiApplication::screenAt(window->geometry().center());
    return screen ? screen : QGuiApplication::primaryScreen();
}
