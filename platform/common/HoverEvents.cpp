// SPDX-License-Identifier: MIT
#include "platform/common/HoverEvents.h"

#include <QCoreApplication>
#include <QCursor>
#include <QEnterEvent>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QWindow>

namespace {

void sendEnter(QWidget &window)
{
    const QPointF global = QCursor::pos();
    const QPointF local = window.mapFromGlobal(global);
    QEnterEvent event(local, local, global);
    QCoreApplication::sendEvent(window.windowHandle(), &event);
}

void sendMove(QWidget &window)
{
    const QPointF global = QCursor::pos();
    const QPointF local = window.mapFromGlobal(global);
    QMouseEvent event(QEvent::MouseMove, local, local, global, Qt::NoButton, Qt::NoButton,
                      QGuiApplication::queryKeyboardModifiers());
    QCoreApplication::sendEvent(window.windowHandle(), &event);
}

} // namespace

HoverEvents::HoverEvents(QWidget &hovered)
    : window(&hovered)
{
}

// When the window handles these events, it finds the view under the pointer, sends enter and leave events, and wakes
// tool tips.
void HoverEvents::move()
{
    const QPointer<QWidget> hovered = window;
    if (!hovered || !hovered->windowHandle())
        return;
    if (!isInside) {
        isInside = true;
        sendEnter(*hovered);
    }
    // The handler of the first event may have deleted the window.
    if (hovered && hovered->windowHandle())
        sendMove(*hovered);
}

void HoverEvents::leave()
{
    if (!isInside)
        return;
    isInside = false;
    if (!window || !window->windowHandle())
        return;
    QEvent event(QEvent::Leave);
    QCoreApplication::sendEvent(window->windowHandle(), &event);
}
