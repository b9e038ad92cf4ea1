// SPDX-License-Identifier: MIT
#include "platform/linux/drags/XcbDropPasteboard.h"

#include "platform/FileURLs.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

constexpr quint8 kSentByClient = 0x80;
constexpr quint8 kLongs = 32;
constexpr qint64 kWayBack = 1000; // milliseconds; a message to this program itself arrives within them
constexpr quint32 kMostTypes = 1024;

// The indexes of the fields in the XDND messages.
constexpr int kSource = 0;
constexpr int kFlags = 1;
constexpr int kDropTime = 2;
constexpr int kFirstType = 2;
constexpr int kLastType = 4;
constexpr quint32 kMoreTypes = 1; // in the flags of XdndEnter

bool isSame(const xcb_client_message_event_t &a, const xcb_client_message_event_t &b)
{
    return a.window == b.window && a.type == b.type && std::memcmp(&a.data, &b.data, sizeof a.data) == 0;
}

} // namespace

XcbDropPasteboard::XcbDropPasteboard(std::shared_ptr<XcbConnection> xcb, std::chrono::milliseconds patience)
    : connection(std::move(xcb))
    , reader(connection, patience)
{
    if (!connection || !connection->isAlive())
        return;
    enter = connection->atom("XdndEnter");
    position = connection->atom("XdndPosition");
    leave = connection->atom("XdndLeave");
    drop = connection->atom("XdndDrop");
    finished = connection->atom("XdndFinished");
    selection = connection->atom("XdndSelection");
    uriList = connection->atom("text/uri-list");
    link = connection->atom("text/x-moz-url");
    QCoreApplication::instance()->installNativeEventFilter(this);
}

QList<QUrl> XcbDropPasteboard::fileURLs(const QMimeData *data) const
{
    // A drag of this program sends no messages; then `data` has the files.
    return isDelivering ? files : ::fileURLs(data);
}

bool XcbDropPasteboard::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    isDelivering = false;
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto &event = *static_cast<const xcb_generic_event_t *>(message);
    if ((event.response_type & static_cast<quint8>(~kSentByClient)) != XCB_CLIENT_MESSAGE)
        return false;
    const auto &client = reinterpret_cast<const Message &>(event);
    if (client.format != kLongs ||
        (client.type != enter && client.type != position && client.type != leave && client.type != drop))
        return false;
    const bool isTaken = takes(client);
    if (client.type == leave || client.type == drop)
        tellArrived();
    return isTaken;
}

// Whether the message must not reach Qt now.
bool XcbDropPasteboard::takes(const Message &message)
{
    if (!resent.empty() && sent.hasExpired(kWayBack)) {
        // The destination window no longer exists, and neither do the messages for it.
        resent.clear();
        held.clear();
    }
    const bool isBack = !resent.empty() && isSame(message, resent.front());
    if (!isBack)
        follow(message);
    if (isBack) {
        resent.pop_front();
        isDelivering = message.type == drop && std::exchange(isKnown, false);
        if (resent.empty() && !held.empty() && !reader.isReading())
            sendHeld();
    }
    if (isDelivering)
        return false;
    if (reader.isReading() || (!isBack && !resent.empty())) {
        held.push_back(message);
        // A new drag has begun, so no user waits for the drop any more.
        if (message.type == enter && reader.isReading())
            giveUp();
        return true;
    }
    if (message.type == enter)
        entered = message;
    if (message.type != drop || message.data.data32[kSource] != entered.data.data32[kSource] ||
        connection->isOwn(message.data.data32[kSource]))
        return false;
    const std::vector<xcb_atom_t> types = offeredTypes();
    const auto isOffered = [&types](xcb_atom_t type) {
        return std::find(types.begin(), types.end(), type) != types.end();
    };
    if (!isOffered(uriList) && !isOffered(link))
        return false;
    target = isOffered(uriList) ? uriList : link;
    held.push_front(message);
    read(message);
    return true;
}

// Follows whether a drag is over a window of ours. What is sent back has been followed before.
void XcbDropPasteboard::follow(const Message &message)
{
    const xcb_window_t source = message.data.data32[kSource];
    if (message.type == enter)
        over = connection->isOwn(source) ? xcb_window_t{XCB_NONE} : source;
    else if (message.type != position && source == over)
        over = XCB_NONE;
}

bool XcbDropPasteboard::isExpecting()
{
    if (isReading())
        return true;
    if (over == XCB_NONE)
        return false;
    // A source that has gone says nothing any more.
    if (!connection->reply(xcb_get_window_attributes_reply, xcb_get_window_attributes(connection->get(), over)))
        over = XCB_NONE;
    return over != XCB_NONE;
}

// Later: the message has not been handled yet.
void XcbDropPasteboard::tellArrived()
{
    QMetaObject::invokeMethod(
        &context,
        [this] {
            if (onArrived)
                onArrived();
        },
        Qt::QueuedConnection);
}

std::vector<xcb_atom_t> XcbDropPasteboard::offeredTypes() const
{
    const auto &fields = entered.data.data32;
    if ((fields[kFlags] & kMoreTypes) == 0)
        return {fields + kFirstType, fields + kLastType + 1};
    const auto list = connection->reply(xcb_get_property_reply, xcb_get_property(connection->get(), 0, fields[kSource],
                                                                                 connection->atom("XdndTypeList"),
                                                                                 XCB_ATOM_ATOM, 0, kMostTypes));
    return propertyValues(list.get());
}

void XcbDropPasteboard::read(const Message &message)
{
    files.clear();
    reader.read(
        selection, target, message.data.data32[kDropTime], [this](const QByteArray &answer) { deliver(answer); },
        [this] { giveUp(); });
}

// The source has answered, so Qt may handle the drop.
void XcbDropPasteboard::deliver(const QByteArray &answer)
{
    files = target == uriList ? ::fileURLs(answer) : linkedFileURLs(answer);
    isKnown = true;
    sendHeld();
}

void XcbDropPasteboard::giveUp()
{
    reader.cancel();
    Message &dropped = held.front();
    Message answer{};
    answer.response_type = XCB_CLIENT_MESSAGE;
    answer.format = kLongs;
    answer.window = dropped.data.data32[kSource];
    answer.type = finished;
    answer.data.data32[0] = dropped.window;
    xcb_send_event(connection->get(), 0, answer.window, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char *>(&answer));
    const xcb_window_t source = dropped.data.data32[kSource];
    dropped.type = leave;
    dropped.data = {};
    dropped.data.data32[kSource] = source;
    sendHeld();
}

// Sends the held messages to Qt's windows. They pass through the filter a second time.
void XcbDropPasteboard::sendHeld()
{
    resent = std::exchange(held, {});
    sent.start();
    for (const Message &message : resent)
        xcb_send_event(connection->get(), 0, message.window, XCB_EVENT_MASK_NO_EVENT,
                       reinterpret_cast<const char *>(&message));
    connection->flush();
}
