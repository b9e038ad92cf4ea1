// SPDX-License-Identifier: MIT
#include "platform/linux/drags/DragWindowSetup.h"

#include "platform/linux/x11/XcbConnection.h"

#include <QBitmap>
#include <QEvent>
#include <QGuiApplication>

#include <cstring>

namespace {

xcb_atom_t intern(xcb_connection_t *connection, const char *name)
{
    const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, 0, static_cast<quint16>(std::strlen(name)), name), nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

void announceDragPicture(WId window)
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11)
        return;
    // Use Qt's connection: on another connection the window may not exist yet.
    xcb_connection_t *connection = x11->connection();
    const xcb_atom_t type = intern(connection, "_NET_WM_WINDOW_TYPE_DND");
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window),
                        intern(connection, "_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, 1, &type);
}

} // namespace

DragWindowSetup::DragWindowSetup(const QPixmap &picture, bool blends)
{
    // Qt sets the mask too, but before the window exists.
    if (!blends && picture.hasAlphaChannel()) {
        const QImage alpha = picture.mask().toImage().scaled(picture.deviceIndependentSize().toSize());
        outline = QRegion(QBitmap::fromImage(alpha));
    }
    qGuiApp->installEventFilter(this);
}

bool DragWindowSetup::eventFilter(QObject *object, QEvent *event)
{
    // At this event the window exists and is not yet on the screen.
    if (event->type() != QEvent::Show)
        return false;
    auto *window = qobject_cast<QWindow *>(object);
    if (!window || !isDragWindow(*window))
        return false;
    // Qt creates the native window anew when it shows it. It keeps the mask, but not properties that others have set.
    QMetaObject::invokeMethod(
        window, [window] { announceDragPicture(window->winId()); }, Qt::QueuedConnection);
    if (!outline.isEmpty())
        window->setMask(outline);
    return false;
}

bool isDragWindow(const QWindow &window)
{
    return window.flags().testFlag(Qt::WindowTransparentForInput) &&
           window.flags().testFlag(Qt::BypassWindowManagerHint);
}
