// SPDX-License-Identifier: MIT
#include "platform/linux/drags/XcbDropPasteboard.h"

#include "platform/FileURLs.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

constexpr quint8 kSentByClient = 0x80;
constexpr quint8 kBytes = 8;
constexpr quint8 kLongs = 32;
// At most so much of a property is read, in the protocol's units of four bytes: one unit more than the longest list.
constexpr quint32 kLongestProperty = kLongestAddressList / 4 + 1;
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
    pieceWise = connection->atom("INCR");
    for (std::size_t i = 0; i < properties.size(); ++i)
        properties[i] = connection->atom("_PARKLET_DROP_" + QByteArray::number(int(i)));
    requestor = xcb_generate_id(connection->get());
    constexpr quint32 events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(connection->get(), 0, requestor, connection->root(), -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    connection->flush();
    subscription = connection->listen([this](const xcb_generic_event_t &event) { handle(event); });
    silence.setSingleShot(true);
    silence.setInterval(patience);
    QObject::connect(&silence, &QTimer::timeout, &silence, [this] { giveUp(); });
    QCoreApplication::instance()->installNativeEventFilter(this);
}

XcbDropPasteboard::~XcbDropPasteboard()
{
    if (requestor != XCB_NONE)
        xcb_destroy_window(connection->get(), requestor);
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
    return takes(client);
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
    if (isBack) {
        resent.pop_front();
        isDelivering = message.type == drop && std::exchange(isKnown, false);
        if (resent.empty() && !held.empty() && !silence.isActive())
            sendHeld();
    }
    if (isDelivering)
        return false;
    if (silence.isActive() || (!isBack && !resent.empty())) {
        held.push_back(message);
        // A new drag has begun, so no user waits for the drop any more.
        if (message.type == enter && silence.isActive())
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
    ++reads;
    inPieces = false;
    pieces.clear();
    files.clear();
    xcb_convert_selection(connection->get(), requestor, selection, target, properties[reads % properties.size()],
                          message.data.data32[kDropTime]);
    connection->flush();
    silence.start();
}

void XcbDropPasteboard::handle(const xcb_generic_event_t &event)
{
    const quint8 type = event.response_type & static_cast<quint8>(~kSentByClient);
    if (type == XCB_SELECTION_NOTIFY)
        answered(reinterpret_cast<const xcb_selection_notify_event_t &>(event));
    else if (type == XCB_PROPERTY_NOTIFY)
        pieceArrived(reinterpret_cast<const xcb_property_notify_event_t &>(event));
}

void XcbDropPasteboard::answered(const xcb_selection_notify_event_t &event)
{
    if (event.requestor != requestor)
        return;
    const xcb_atom_t expected = properties[reads % properties.size()];
    const bool isAwaited = silence.isActive() && !inPieces && event.selection == selection && event.target == target;
    if (!isAwaited || (event.property != expected && event.property != XCB_ATOM_NONE)) {
        if (event.property != XCB_ATOM_NONE && !(silence.isActive() && event.property == expected)) {
            xcb_delete_property(connection->get(), requestor, event.property);
            connection->flush();
        }
        return;
    }
    if (event.property == XCB_ATOM_NONE) {
        deliver();
        return;
    }
    const auto answer = takeProperty();
    if (answer && answer->type == pieceWise) {
        // The source sends the next piece after its first property has been deleted.
        inPieces = true;
        return;
    }
    if (answer && answer->type == target && answer->format == kBytes)
        pieces = QByteArray(static_cast<const char *>(xcb_get_property_value(answer.get())),
                            xcb_get_property_value_length(answer.get()));
    deliver();
}

void XcbDropPasteboard::pieceArrived(const xcb_property_notify_event_t &event)
{
    if (event.window != requestor || event.state != XCB_PROPERTY_NEW_VALUE)
        return;
    const bool isAwaited = silence.isActive() && event.atom == properties[reads % properties.size()];
    if (isAwaited && !inPieces)
        return; // the notification of the answer arrives later
    if (!isAwaited) {
        // Delete each late piece, so that its source can finish and the server keeps nothing.
        xcb_delete_property(connection->get(), requestor, event.atom);
        connection->flush();
        return;
    }
    const auto piece = takeProperty();
    if (!piece || piece->type == XCB_ATOM_NONE)
        return;
    const int length = xcb_get_property_value_length(piece.get());
    if (piece->format == kBytes)
        pieces.append(static_cast<const char *>(xcb_get_property_value(piece.get())), length);
    if (length == 0 || pieces.size() > kLongestAddressList)
        deliver();
}

// Reads the current answer and deletes it from the server.
XcbReply<xcb_get_property_reply_t> XcbDropPasteboard::takeProperty()
{
    const xcb_atom_t property = properties[reads % properties.size()];
    auto answer = connection->reply(xcb_get_property_reply, xcb_get_property(connection->get(), 1, requestor, property,
                                                                             XCB_ATOM_ANY, 0, kLongestProperty));
    if (answer && answer->bytes_after > 0)
        xcb_delete_property(connection->get(), requestor, property);
    connection->flush();
    return answer;
}

// The source has answered, so Qt may handle the drop.
void XcbDropPasteboard::deliver()
{
    silence.stop();
    const QByteArray answer = std::exchange(pieces, {});
    files = target == uriList ? ::fileURLs(answer) : linkedFileURLs(answer);
    isKnown = true;
    sendHeld();
}

void XcbDropPasteboard::giveUp()
{
    silence.stop();
    pieces.clear();
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
