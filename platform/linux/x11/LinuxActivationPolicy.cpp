// SPDX-License-Identifier: MIT
#include "platform/linux/x11/LinuxActivationPolicy.h"

#include "platform/linux/x11/XcbConnection.h"

#include <QApplication>
#include <QEvent>
#include <QPointer>
#include <QWidget>
#include <QWindowStateChangeEvent>

#include <algorithm>
#include <array>

namespace {

constexpr auto kState = "_NET_WM_STATE";
constexpr auto kActiveWindow = "_NET_ACTIVE_WINDOW";
constexpr std::array kHints = {"_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER"};

// Values of a _NET_WM_STATE message: what to do with a state, and who asks for it.
constexpr quint32 kRemoveState = 0;
constexpr quint32 kAddState = 1;
constexpr quint32 kFromApplication = 1;
constexpr quint32 kFromUser = 2;

constexpr quint32 kLongestState = 1024; // atoms

// Qt's connection, which maps the windows: requests on it arrive in order with the mapping.
xcb_connection_t *windowConnection()
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

template<typename Cookie, typename Reply>
XcbReply<Reply> await(xcb_connection_t *xcb, Reply *(*function)(xcb_connection_t *, Cookie, xcb_generic_error_t **),
                      Cookie cookie)
{
    xcb_generic_error_t *error = nullptr;
    XcbReply<Reply> reply(function(xcb, cookie, &error));
    std::free(error);
    return reply;
}

void tellWindowManager(xcb_connection_t *xcb, xcb_window_t window, xcb_atom_t type, const std::array<quint32, 5> &data)
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = type;
    std::copy(data.begin(), data.end(), message.data.data32);
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(xcb)).data->root;
    xcb_send_event(xcb, 0, root, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&message));
    xcb_flush(xcb);
}

// Whether a task list would show the window: it is no panel, menu or tool tip.
bool isNormalWindow(const QWidget &widget)
{
    const Qt::WindowType type = widget.windowType();
    return widget.isWindow() && (type == Qt::Window || type == Qt::Dialog) &&
           !widget.windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus) &&
           widget.windowRole() != QLatin1String("shelf") && widget.windowRole() != QLatin1String("cursor-shelf");
}

} // namespace

LinuxActivationPolicy::LinuxActivationPolicy()
{
    qApp->installEventFilter(this);
}

xcb_atom_t LinuxActivationPolicy::atom(const char *name)
{
    const auto known = atoms.constFind(name);
    if (known != atoms.constEnd())
        return *known;
    xcb_connection_t *xcb = windowConnection();
    const auto reply =
        await(xcb, xcb_intern_atom_reply, xcb_intern_atom(xcb, 0, static_cast<quint16>(qstrlen(name)), name));
    return reply ? *atoms.insert(name, reply->atom) : xcb_atom_t{XCB_ATOM_NONE};
}

bool LinuxActivationPolicy::isLeftOut(const QWidget &window) const
{
    return current == Policy::Accessory && !window.isMinimized();
}

void LinuxActivationPolicy::writeHints(xcb_connection_t *xcb, const QWidget &widget)
{
    const auto window = static_cast<xcb_window_t>(widget.winId());
    const xcb_atom_t property = atom(kState);
    const auto reply =
        await(xcb, xcb_get_property_reply, xcb_get_property(xcb, 0, window, property, XCB_ATOM_ATOM, 0, kLongestState));
    std::vector<quint32> state = propertyValues(reply.get());
    for (const char *hint : kHints) {
        const xcb_atom_t value = atom(hint);
        std::erase(state, value);
        if (isLeftOut(widget))
            state.push_back(value);
    }
    xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_ATOM, 32,
                        static_cast<quint32>(state.size()), state.data());
}

void LinuxActivationPolicy::askForHints(xcb_connection_t *xcb, const QWidget &widget)
{
    tellWindowManager(
        xcb, static_cast<xcb_window_t>(widget.winId()), atom(kState),
        {isLeftOut(widget) ? kAddState : kRemoveState, atom(kHints[0]), atom(kHints[1]), kFromApplication});
}

void LinuxActivationPolicy::set(Policy policy)
{
    // This runs at every settings change, even at each step of a slider.
    if (policy == current)
        return;
    current = policy;
    xcb_connection_t *xcb = windowConnection();
    if (!xcb)
        return;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        if (window->isVisible() && isNormalWindow(*window))
            askForHints(xcb, *window);
    }
}

void LinuxActivationPolicy::activate(QWidget &window)
{
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
    // The window manager may refuse what Qt asks for as an application, since the user last worked in another one.
    if (xcb_connection_t *xcb = windowConnection())
        tellWindowManager(xcb, static_cast<xcb_window_t>(window.winId()), atom(kActiveWindow),
                          {kFromUser, XCB_CURRENT_TIME});
}

bool LinuxActivationPolicy::eventFilter(QObject *object, QEvent *event)
{
    // A spontaneous event is about a window that is already on screen, for instance a restored one.
    if (event->type() == QEvent::Show && !event->spontaneous() && object->isWidgetType()) {
        auto *widget = static_cast<QWidget *>(object);
        xcb_connection_t *xcb = widget->isWindow() ? windowConnection() : nullptr;
        // The window is about to be mapped. The window manager forgot its state when it was hidden.
        if (xcb && isNormalWindow(*widget)) {
            writeHints(xcb, *widget);
            // A window manager that is late forgets it only now, before it maps the window, so ask again afterwards.
            QMetaObject::invokeMethod(
                this,
                [this, xcb, shown = QPointer(widget)] {
                    if (current == Policy::Accessory && shown && shown->isVisible())
                        askForHints(xcb, *shown);
                },
                Qt::QueuedConnection);
        }
    }
    if (event->type() == QEvent::WindowStateChange && object->isWidgetType()) {
        const auto *widget = static_cast<const QWidget *>(object);
        const bool wasMinimized = static_cast<QWindowStateChangeEvent *>(event)->oldState() & Qt::WindowMinimized;
        xcb_connection_t *xcb =
            widget->isVisible() && wasMinimized != widget->isMinimized() ? windowConnection() : nullptr;
        if (xcb && current == Policy::Accessory && isNormalWindow(*widget))
            askForHints(xcb, *widget);
    }
    return QObject::eventFilter(object, event);
}
