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

// What xcb hands out is freed by the receiver.
struct XcbFree {
    void operator()(void *memory) const { std::free(memory); }
};
template<typename T>
using XcbReply = std::unique_ptr<T, XcbFree>;

// A connection to the X server of our own, apart from Qt's, whose events arrive on the main loop. When the server goes
// away it falls silent: requests do nothing and replies are null. Errors of unchecked requests are dropped, as the
// windows of others may vanish at any time.
class XcbConnection : public QObject, public std::enable_shared_from_this<XcbConnection> {
public:
    using Handler = std::function<void(const xcb_generic_event_t &event)>;
    using Subscription = std::shared_ptr<const Handler>;

    // Null when the program does not run on an X server.
    static std::shared_ptr<XcbConnection> open();

    // Connects to `display`, or to the environment's when it is null; null when there is no such server.
    static std::shared_ptr<XcbConnection> open(const char *display);

    ~XcbConnection() override;

    // For requests. What they queue is sent before the main loop sleeps; flush() sends it at once.
    xcb_connection_t *get() const { return connection; }
    void flush() { xcb_flush(connection); }

    bool isAlive() const { return xcb_connection_has_error(connection) == 0; }
    int screenNumber() const { return number; }
    xcb_window_t root() const { return screen->root; }

    // The atom of that name, interned at most once.
    xcb_atom_t atom(const QByteArray &name);

    // Hears every event until the subscription is let go of, which may happen within a handler.
    [[nodiscard]] Subscription listen(Handler handler);

    // Adds to the events of the root window that this connection hears; one service never takes away another's.
    void addRootEvents(quint32 mask);

    // Whether `window` was made by this process: through this connection or through Qt's.
    bool isOwn(xcb_window_t window) const;

    // The extension's first event, once XFixes is there in the version we speak.
    std::optional<quint8> xfixesFirstEvent() const { return xfixesEvent; }

    // A property of 32-bit values; empty when the window or the property is not there or has another type. One round
    // trip.
    std::vector<quint32> values(xcb_window_t window, xcb_atom_t property, xcb_atom_t type);

    // The reply to a request made before, or null; its error is dropped.
    template<typename Cookie, typename Reply>
    XcbReply<Reply> reply(Reply *(*function)(xcb_connection_t *, Cookie, xcb_generic_error_t **), Cookie cookie)
    {
        xcb_generic_error_t *error = nullptr;
        XcbReply<Reply> answer(function(connection, cookie, &error));
        std::free(error);
        return answer;
    }

    // Whether a compositor runs, so that windows may be translucent: it owns this selection.
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

// What kind of event it is, whether the server or a client has sent it.
inline quint8 eventType(const xcb_generic_event_t &event)
{
    constexpr quint8 kTypeWithoutSendEventBit = 0x7f;
    return event.response_type & kTypeWithoutSendEventBit;
}

// The values of a reply to a property request, as XcbConnection::values() gives them.
std::vector<quint32> propertyValues(const xcb_get_property_reply_t *reply);
