// SPDX-License-Identifier: MIT
#include "platform/linux/x11/XcbConnection.h"

#include <QAbstractEventDispatcher>
#include <QGuiApplication>

#include <xcb/xfixes.h>

#include <algorithm>
#include <array>
#include <utility>

namespace {

// The largest number of 32-bit values to read of a property.
constexpr quint32 kLongestProperty = 1u << 20;

constexpr quint32 kXFixesMajor = 5;
constexpr quint32 kXFixesMinor = 0;

// Interned when the connection opens, all in one round trip.
constexpr std::array kAtoms = {
    "WM_STATE",
    "WM_CLASS",
    "WM_WINDOW_ROLE",
    "_NET_ACTIVE_WINDOW",
    "_NET_CLIENT_LIST",
    "_NET_CLIENT_LIST_STACKING",
    "_NET_CURRENT_DESKTOP",
    "_NET_WM_DESKTOP",
    "_NET_WM_STATE",
    "_NET_WM_STATE_FULLSCREEN",
    "_NET_WM_STATE_SKIP_PAGER",
    "_NET_WM_STATE_SKIP_TASKBAR",
    "_NET_WM_STATE_STICKY",
    "_NET_WM_STRUT",
    "_NET_WM_STRUT_PARTIAL",
    "_NET_WM_WINDOW_TYPE",
    "_NET_WM_WINDOW_TYPE_DOCK",
    "_NET_WORKAREA",
    "_KDE_NET_WM_BLUR_BEHIND_REGION",
};

xcb_screen_t *screenAt(xcb_connection_t *connection, int number)
{
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int i = 0; i < number; ++i)
        xcb_screen_next(&screens);
    return screens.data;
}

} // namespace

std::shared_ptr<XcbConnection> XcbConnection::open()
{
    return QGuiApplication::platformName() == QLatin1String("xcb") ? open(nullptr) : nullptr;
}

std::shared_ptr<XcbConnection> XcbConnection::open(const char *display)
{
    int number = 0;
    xcb_connection_t *connection = xcb_connect(display, &number);
    if (xcb_connection_has_error(connection) != 0) {
        xcb_disconnect(connection);
        return nullptr;
    }
    return std::shared_ptr<XcbConnection>(new XcbConnection(connection, number));
}

XcbConnection::XcbConnection(xcb_connection_t *opened, int screenIndex)
    : connection(opened)
    , number(screenIndex)
    , screen(screenAt(opened, screenIndex))
    , notifier(xcb_get_file_descriptor(opened), QSocketNotifier::Read)
{
    xcb_prefetch_extension_data(connection, &xcb_xfixes_id);
    std::array<xcb_intern_atom_cookie_t, kAtoms.size()> cookies;
    for (std::size_t i = 0; i < kAtoms.size(); ++i)
        cookies[i] = xcb_intern_atom(connection, 0, static_cast<quint16>(qstrlen(kAtoms[i])), kAtoms[i]);
    for (std::size_t i = 0; i < kAtoms.size(); ++i) {
        if (const auto answer = reply(xcb_intern_atom_reply, cookies[i]))
            atoms.insert(QByteArray(kAtoms[i]), answer->atom);
    }
    const xcb_query_extension_reply_t *xfixes = xcb_get_extension_data(connection, &xcb_xfixes_id);
    if (xfixes && xfixes->present != 0) {
        // A client must state its version before it may use the extension.
        const auto version =
            reply(xcb_xfixes_query_version_reply, xcb_xfixes_query_version(connection, kXFixesMajor, kXFixesMinor));
        if (version && version->major_version >= 1)
            xfixesEvent = xfixes->first_event;
    }

    QObject::connect(&notifier, &QSocketNotifier::activated, this, [this] { readSocket(); });
    // Waiting for a reply moves earlier events into xcb's queue, and the socket notifier does not report those.
    if (auto *dispatcher = QAbstractEventDispatcher::instance()) {
        QObject::connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, this, [this] { collectQueued(); });
        QObject::connect(dispatcher, &QAbstractEventDispatcher::awake, this, [this] { collectQueued(); });
    }
}

XcbConnection::~XcbConnection()
{
    notifier.setEnabled(false);
    xcb_disconnect(connection);
}

xcb_atom_t XcbConnection::atom(const QByteArray &name)
{
    const auto known = atoms.constFind(name);
    if (known != atoms.cend())
        return *known;
    const auto answer = reply(xcb_intern_atom_reply,
                              xcb_intern_atom(connection, 0, static_cast<quint16>(name.size()), name.constData()));
    if (!answer)
        return XCB_ATOM_NONE;
    atoms.insert(name, answer->atom);
    return answer->atom;
}

XcbConnection::Subscription XcbConnection::listen(Handler handler)
{
    auto subscription = std::make_shared<const Handler>(std::move(handler));
    listeners.push_back(subscription);
    return subscription;
}

void XcbConnection::addRootEvents(quint32 mask)
{
    rootEvents |= mask;
    xcb_change_window_attributes(connection, root(), XCB_CW_EVENT_MASK, &rootEvents);
    flush();
}

bool XcbConnection::isOwn(xcb_window_t window) const
{
    const auto belongsTo = [window](xcb_connection_t *client) {
        const xcb_setup_t *setup = xcb_get_setup(client);
        return setup && window != XCB_NONE && (window & ~setup->resource_id_mask) == setup->resource_id_base;
    };
    if (belongsTo(connection))
        return true;
    const auto *x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 && belongsTo(x11->connection());
}

std::vector<quint32> XcbConnection::values(xcb_window_t window, xcb_atom_t property, xcb_atom_t type)
{
    const auto cookie = xcb_get_property(connection, 0, window, property, type, 0, kLongestProperty);
    return propertyValues(reply(xcb_get_property_reply, cookie).get());
}

bool XcbConnection::hasCompositor()
{
    const auto owner = reply(xcb_get_selection_owner_reply, xcb_get_selection_owner(connection, compositorSelection()));
    return owner && owner->owner != XCB_NONE;
}

bool XcbConnection::succeeded(xcb_void_cookie_t cookie)
{
    const XcbReply<xcb_generic_error_t> error(xcb_request_check(connection, cookie));
    return !error && isAlive();
}

void XcbConnection::readSocket()
{
    while (xcb_generic_event_t *event = xcb_poll_for_event(connection))
        pending.emplace_back(event);
    // A closed socket stays readable for ever: stop watching it.
    if (!isAlive())
        notifier.setEnabled(false);
    dispatch();
}

void XcbConnection::collectQueued()
{
    xcb_flush(connection);
    while (xcb_generic_event_t *event = xcb_poll_for_queued_event(connection))
        pending.emplace_back(event);
    if (pending.empty() || dispatchQueued)
        return;
    // Handlers may run a loop of their own, so do not call them from the event dispatcher.
    dispatchQueued = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            dispatchQueued = false;
            dispatch();
        },
        Qt::QueuedConnection);
}

void XcbConnection::dispatch()
{
    // A handler may run a loop that enters this function again, add or remove listeners, or delete the connection.
    const auto keep = weak_from_this().lock();
    while (!pending.empty()) {
        const auto event = std::move(pending.front());
        pending.pop_front();
        if (eventType(*event) == 0)
            continue;
        const auto audience = listeners;
        for (const auto &listener : audience) {
            if (const Subscription handler = listener.lock())
                (*handler)(*event);
        }
    }
    std::erase_if(listeners, [](const auto &listener) { return listener.expired(); });
}

std::vector<quint32> propertyValues(const xcb_get_property_reply_t *reply)
{
    constexpr quint8 kBits = 32;
    if (!reply || reply->format != kBits)
        return {};
    const auto *first = static_cast<const quint32 *>(xcb_get_property_value(reply));
    return {first, first + reply->value_len};
}
