// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QSocketNotifier>

#include <xcb/xcb.h>

#include <cstdlib>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

// The receiver frees what xcb returns.
struct XcbFree {
    void operator()(void *memory) const { std::free(memory); }
};
template<typename T>
using XcbReply = std::unique_ptr<T, XcbFree>;

// Our own connection to the X server, apart from Qt's. Its events arrive on the main loop. After the server has gone,
// requests do nothing and replies are null. Errors of unchecked requests are ignored, because other programs' windows
// may disappear at any time.
class XcbConnection : public QObject, public std::enable_shared_from_this<XcbConnection> {
public:
    using Handler = std::function<void(const xcb_generic_event_t &event)>;
    using Subscription = std::shared_ptr<const Handler>;

    // Null when the program does not run on an X server.
    static std::shared_ptr<XcbConnection> open();

    // Connects to `display`, or to DISPLAY when that is null. Null when there is no such server.
    static std::shared_ptr<XcbConnection> open(const char *display);

    ~XcbConnection() override;

    // For requests. They are sent before the main loop sleeps; flush() sends them at once.
    xcb_connection_t *get() const { return connection; }
    void flush() { xcb_flush(connection); }

    bool isAlive() const { return xcb_connection_has_error(connection) == 0; }
    int screenNumber() const { return number; }
    xcb_window_t root() const { return screen->root; }

    // The atom of that name, interned at most once.
    xcb_atom_t atom(const QByteArray &name);

    // Calls `handler` for every event until the subscription is destroyed, which a handler may do.
    [[nodiscard]] Subscription listen(Handler handler);

    // Selects further events of the root window. Selections of other services stay.
    void addRootEvents(quint32 mask);

    // Whether this process made `window`, through this connection or Qt's.
    bool isOwn(xcb_window_t window) const;

    // The first event number of XFixes. Nothing without the version that we need.
    std::optional<quint8> xfixesFirstEvent() const { return xfixesEvent; }

    // The values of a 32-bit property. Empty when the window or the property is missing, or has another type. One round
    // trip.
    std::vector<quint32> values(xcb_window_t window, xcb_atom_t property, xcb_atom_t type);

    // The reply to a request made before, or null. Ignores its error.
    template<typename Cookie, typename Reply>
    XcbReply<Reply> reply(Reply *(*function)(xcb_connection_t *, Cookie, xcb_generic_error_t **), Cookie cookie)
    {
        xcb_generic_error_t *error = nullptr;
        XcbReply<Reply> answer(function(connection, cookie, &error));
        std::free(error);
        return answer;
    }

    // Whether a compositor runs, so that windows may be translucent. It owns the selection below.
    bool hasCompositor();
    xcb_atom_t compositorSelection() { return atom("_NET_WM_CM_S" + QByteArray::number(number)); }

    // Whether a checked request succeeded.
    bool succeeded(xcb_void_cookie_t cookie);

private:
    XcbConnection(xcb_connection_t *opened, int screenIndex);

    void readSocket();
    void collectQueued();
    void dispatch();

    xcb_connection_t *connection;
    int number;
    xcb_screen_t *screen = nullptr;
    QSocketNotifier notifier;
    QHash<QByteArray, xcb_atom_t> atoms;
    std::vector<std::weak_ptr<const Handler>> listeners;
    std::deque<XcbReply<xcb_generic_event_t>> pending;
    bool dispatchQueued = false;
    quint32 rootEvents = 0;
    std::optional<quint8> xfixesEvent;
};

// The type of an event, without the bit that says that a client sent it.
inline quint8 eventType(const xcb_generic_event_t &event)
{
    constexpr quint8 kTypeWithoutSendEventBit = 0x7f;
    return event.response_type & kTypeWithoutSendEventBit;
}

// The values of a reply to a property request, as XcbConnection::values() gives them.
std::vector<quint32> propertyValues(const xcb_get_property_reply_t *reply);
