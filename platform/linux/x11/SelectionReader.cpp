// SPDX-License-Identifier: MIT
#include "platform/linux/x11/SelectionReader.h"

#include "platform/FileURLs.h"

#include <utility>

namespace {

constexpr quint8 kSentByClient = 0x80;
constexpr quint8 kBytes = 8;
// At most so much of a property is read, in the protocol's units of four bytes: one unit more than the longest list.
constexpr quint32 kLongestProperty = kLongestAddressList / 4 + 1;

} // namespace

SelectionReader::SelectionReader(std::shared_ptr<XcbConnection> xcb, std::chrono::milliseconds patience)
    : connection(std::move(xcb))
{
    if (!connection || !connection->isAlive())
        return;
    pieceWise = connection->atom("INCR");
    for (std::size_t i = 0; i < properties.size(); ++i)
        properties[i] = connection->atom("_PARKLET_SELECTION_" + QByteArray::number(int(i)));
    requestor = xcb_generate_id(connection->get());
    constexpr quint32 events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(connection->get(), 0, requestor, connection->root(), -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    connection->flush();
    subscription = connection->listen([this](const xcb_generic_event_t &event) { handle(event); });
    silence.setSingleShot(true);
    silence.setInterval(patience);
    QObject::connect(&silence, &QTimer::timeout, &silence, [this] {
        answered = nullptr;
        pieces.clear();
        if (const auto call = std::exchange(silent, nullptr))
            call();
    });
}

SelectionReader::~SelectionReader()
{
    if (requestor != XCB_NONE)
        xcb_destroy_window(connection->get(), requestor);
}

void SelectionReader::read(xcb_atom_t owned, xcb_atom_t type, xcb_timestamp_t time,
                           std::function<void(const QByteArray &)> onAnswer, std::function<void()> onSilence)
{
    selection = owned;
    target = type;
    answered = std::move(onAnswer);
    silent = std::move(onSilence);
    inPieces = false;
    pieces.clear();
    ++reads;
    if (requestor != XCB_NONE) {
        xcb_convert_selection(connection->get(), requestor, selection, target, properties[reads % properties.size()],
                              time);
        connection->flush();
    }
    silence.start();
}

void SelectionReader::cancel()
{
    silence.stop();
    answered = nullptr;
    silent = nullptr;
    pieces.clear();
}

void SelectionReader::handle(const xcb_generic_event_t &event)
{
    const quint8 type = event.response_type & static_cast<quint8>(~kSentByClient);
    if (type == XCB_SELECTION_NOTIFY)
        ownerAnswered(reinterpret_cast<const xcb_selection_notify_event_t &>(event));
    else if (type == XCB_PROPERTY_NOTIFY)
        pieceArrived(reinterpret_cast<const xcb_property_notify_event_t &>(event));
}

void SelectionReader::ownerAnswered(const xcb_selection_notify_event_t &event)
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
        finish();
        return;
    }
    const auto answer = takeProperty();
    if (answer && answer->type == pieceWise) {
        // The owner sends the next piece after its first property has been deleted.
        inPieces = true;
        return;
    }
    if (answer && answer->type == target && answer->format == kBytes)
        pieces = QByteArray(static_cast<const char *>(xcb_get_property_value(answer.get())),
                            xcb_get_property_value_length(answer.get()));
    finish();
}

void SelectionReader::pieceArrived(const xcb_property_notify_event_t &event)
{
    if (event.window != requestor || event.state != XCB_PROPERTY_NEW_VALUE)
        return;
    const bool isAwaited = silence.isActive() && event.atom == properties[reads % properties.size()];
    if (isAwaited && !inPieces)
        return; // the notification of the answer arrives later
    if (!isAwaited) {
        // Delete each late piece, so that its owner can finish and the server keeps nothing.
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
        finish();
}

// Reads the current answer and deletes it from the server.
XcbReply<xcb_get_property_reply_t> SelectionReader::takeProperty()
{
    const xcb_atom_t property = properties[reads % properties.size()];
    auto answer = connection->reply(xcb_get_property_reply, xcb_get_property(connection->get(), 1, requestor, property,
                                                                             XCB_ATOM_ANY, 0, kLongestProperty));
    if (answer && answer->bytes_after > 0)
        xcb_delete_property(connection->get(), requestor, property);
    connection->flush();
    return answer;
}

void SelectionReader::finish()
{
    silence.stop();
    silent = nullptr;
    const QByteArray answer = std::exchange(pieces, {});
    if (const auto call = std::exchange(answered, nullptr))
        call(answer);
}
