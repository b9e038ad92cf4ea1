// SPDX-License-Identifier: MIT
#include "platform/linux/drags/ForeignDragWatcher.h"

#include "platform/FileURLs.h"
#include "platform/common/DragSources.h"

#include <xcb/xfixes.h>
#include <xcb/xinput.h>

#include <algorithm>
#include <chrono>
#include <utility>
#include <vector>

using namespace std::chrono_literals;

namespace {

// Some drags end without a button event that reaches this program.
constexpr auto kWatchdogInterval = 250ms;
// A client of an older XInput does not receive the release while another client has grabbed the pointer.
constexpr quint16 kXInputMajor = 2;
constexpr quint16 kXInputMinor = 2;
constexpr quint16 kXInputLeastMinor = 1;
// At most so much of a property is read, in the protocol's units of four bytes: one unit more than the longest list.
constexpr quint32 kLongestProperty = kLongestAddressList / 4 + 1;
constexpr quint8 kBytes = 8;

constexpr quint32 kPointerEvents = XCB_INPUT_XI_EVENT_MASK_RAW_MOTION | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE |
                                   XCB_INPUT_XI_EVENT_MASK_RAW_TOUCH_UPDATE | XCB_INPUT_XI_EVENT_MASK_RAW_TOUCH_END;

} // namespace

ForeignDragWatcher::ForeignDragWatcher(const std::shared_ptr<XcbConnection> &xcb)
    : ForeignDragWatcher(xcb, DragBridge(xcb))
{
}

ForeignDragWatcher::ForeignDragWatcher(std::shared_ptr<XcbConnection> xcb, const DragBridge &dragBridge)
    : connection(std::move(xcb))
    , bridge(dragBridge)
    , poll(connection)
{
    foreignDrag.onAsk = [this](ForeignDrag::Question question, ForeignDrag::Target target, quint32 time) {
        ask(question, target, time);
    };
    foreignDrag.onDragged = [this] {
        if (onDragged)
            onDragged();
    };
    foreignDrag.onEnded = [this] {
        if (bridged) {
            poll.stop();
            silence.stop();
            pointer.reset();
        } else {
            ignorePointer();
        }
        asked = {};
        if (onEnded)
            onEnded();
    };
    poll.onGoesOn = [this] { foreignDrag.wentOn(began); };
    poll.onOver = [this] { foreignDrag.end(); };
    silence.setSingleShot(true);
    silence.setInterval(kLongestSilence);
    QObject::connect(&silence, &QTimer::timeout, this, [this] { foreignDrag.silent(); });
    watchdog.setInterval(kWatchdogInterval);
    QObject::connect(&watchdog, &QTimer::timeout, this, [this] { endUnlessLeftButtonDown(); });
}

ForeignDragWatcher::~ForeignDragWatcher()
{
    if (requestor != XCB_NONE)
        xcb_destroy_window(connection->get(), requestor);
}

bool ForeignDragWatcher::start()
{
    if (isWatching)
        return true;
    if (!connection || !connection->isAlive() || !speaksExtensions())
        return false;
    selection = connection->atom("XdndSelection");
    uriList = connection->atom("text/uri-list");
    targets = connection->atom("TARGETS");
    link = connection->atom("text/x-moz-url");
    pieceWise = connection->atom("INCR");
    makeRequestor();
    subscription = connection->listen([this](const xcb_generic_event_t &event) { handle(event); });
    xcb_xfixes_select_selection_input(connection->get(), connection->root(), selection,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    connection->flush();
    isWatching = true;
    return true;
}

bool ForeignDragWatcher::speaksExtensions()
{
    const auto firstXFixesEvent = connection->xfixesFirstEvent();
    const xcb_query_extension_reply_t *input = xcb_get_extension_data(connection->get(), &xcb_input_id);
    if (!firstXFixesEvent || !input || input->present == 0)
        return false;
    const auto version = connection->reply(xcb_input_xi_query_version_reply,
                                           xcb_input_xi_query_version(connection->get(), kXInputMajor, kXInputMinor));
    if (!version ||
        std::pair(version->major_version, version->minor_version) < std::pair(kXInputMajor, kXInputLeastMinor))
        return false;
    inputExtension = input->major_opcode;
    selectionEvent = static_cast<quint8>(*firstXFixesEvent + XCB_XFIXES_SELECTION_NOTIFY);
    return true;
}

void ForeignDragWatcher::makeRequestor()
{
    // Each question has a property of its own, so that a late answer is recognised. The server never frees the names of
    // properties, so a few are used in turn.
    for (std::size_t i = 0; i < answerProperties.size(); ++i)
        answerProperties[i] = connection->atom("_PARKLET_DRAG_" + QByteArray::number(int(i)));
    requestor = xcb_generate_id(connection->get());
    constexpr quint32 events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(connection->get(), 0, requestor, connection->root(), -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
}

void ForeignDragWatcher::handle(const xcb_generic_event_t &event)
{
    const quint8 type = eventType(event);
    if (type == selectionEvent) {
        const auto &change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t &>(event);
        // The event names the last owner even when that owner has gone.
        const bool isOwned = change.subtype == XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER;
        if (change.selection == selection)
            selectionChanged(isOwned ? change.owner : xcb_window_t{XCB_NONE}, change.selection_timestamp);
    } else if (type == XCB_GE_GENERIC) {
        inputHappened(reinterpret_cast<const xcb_ge_generic_event_t &>(event));
    } else if (type == XCB_SELECTION_NOTIFY) {
        selectionAnswered(reinterpret_cast<const xcb_selection_notify_event_t &>(event));
    } else if (type == XCB_PROPERTY_NOTIFY) {
        propertyChanged(reinterpret_cast<const xcb_property_notify_event_t &>(event));
    }
}

void ForeignDragWatcher::selectionChanged(xcb_window_t owner, xcb_timestamp_t time)
{
    foreignDrag.end();
    // Any program may own the selection at any time. It is a drag only while a button is down.
    if (owner == XCB_NONE || connection->isOwn(owner))
        return;
    bridged = bridge.owns(owner);
    if (bridged) {
        // The compositor owns the selection during drags only. The X server does not know that a button is down.
        beginBridged(time);
        return;
    }
    followPointer();
    if (isLeftButtonDown())
        foreignDrag.begin(time);
    else
        ignorePointer();
}

void ForeignDragWatcher::beginBridged(xcb_timestamp_t time)
{
    began = time;
    pointer.reset();
    poll.start(time);
    foreignDrag.begin(time);
}

void ForeignDragWatcher::bridgedPointerMoved(std::optional<QPointF> position)
{
    if (!isBridged())
        return;
    pointer = position;
    if (pointer && onDragged)
        onDragged();
}

void ForeignDragWatcher::inputHappened(const xcb_ge_generic_event_t &event)
{
    if (event.extension != inputExtension || !foreignDrag.isInProgress() || bridged)
        return;
    switch (event.event_type) {
    case XCB_INPUT_RAW_MOTION:
    case XCB_INPUT_RAW_TOUCH_UPDATE:
        foreignDrag.pointerMoved(reinterpret_cast<const xcb_input_raw_motion_event_t &>(event).time);
        break;
    case XCB_INPUT_RAW_BUTTON_RELEASE:
    case XCB_INPUT_RAW_TOUCH_END:
        // The event has the button's physical number. The user's left button may have another one.
        endUnlessLeftButtonDown();
        break;
    default:
        break;
    }
}

void ForeignDragWatcher::selectionAnswered(const xcb_selection_notify_event_t &event)
{
    if (event.requestor != requestor)
        return;
    const bool isCurrent = asked.question != 0 && event.time == asked.time &&
                           (event.property == asked.property || event.property == XCB_ATOM_NONE);
    if (!isCurrent) {
        // If the late answer is in the property of the current question, it may be the current answer already.
        if (event.property != XCB_ATOM_NONE && event.property != asked.property)
            xcb_delete_property(connection->get(), requestor, event.property);
        return;
    }
    if (event.property == XCB_ATOM_NONE) {
        silence.stop();
        foreignDrag.refused(asked.question);
        return;
    }
    const auto answer =
        connection->reply(xcb_get_property_reply, xcb_get_property(connection->get(), 1, requestor, asked.property,
                                                                   XCB_ATOM_ANY, 0, kLongestProperty));
    silence.stop();
    if (answer && answer->type == pieceWise) {
        // The source sends the next piece after its first property has been deleted.
        asked.inPieces = true;
        silence.start();
        foreignDrag.answersInPieces(asked.question);
    } else if (answer && asked.target == targets && answer->type == XCB_ATOM_ATOM && answer->bytes_after == 0) {
        takeOffers(*answer);
    } else if (answer && asked.target != targets && answer->type == asked.target && answer->format == kBytes) {
        // The server deletes a property that was read to its end, and keeps it otherwise.
        if (answer->bytes_after > 0)
            xcb_delete_property(connection->get(), requestor, asked.property);
        const auto *bytes = static_cast<const char *>(xcb_get_property_value(answer.get()));
        foreignDrag.answered(asked.question, QByteArray(bytes, xcb_get_property_value_length(answer.get())));
    } else {
        xcb_delete_property(connection->get(), requestor, asked.property);
        foreignDrag.answeredWrongly(asked.question);
    }
}

void ForeignDragWatcher::takeOffers(const xcb_get_property_reply_t &offers)
{
    const std::vector<quint32> offered = propertyValues(&offers);
    const auto isOffered = [&offered](xcb_atom_t type) {
        return std::find(offered.begin(), offered.end(), type) != offered.end();
    };
    foreignDrag.offered(asked.question, {.uriList = isOffered(uriList), .link = isOffered(link)});
}

void ForeignDragWatcher::propertyChanged(const xcb_property_notify_event_t &event)
{
    if (event.window != requestor || event.state != XCB_PROPERTY_NEW_VALUE)
        return;
    if (event.atom != asked.property) {
        // Delete each late piece, so that its source can finish and the server keeps nothing.
        xcb_delete_property(connection->get(), requestor, event.atom);
        return;
    }
    if (!asked.inPieces)
        return;
    const auto piece =
        connection->reply(xcb_get_property_reply, xcb_get_property(connection->get(), 1, requestor, asked.property,
                                                                   XCB_ATOM_ANY, 0, kLongestProperty));
    if (!piece || piece->type == XCB_ATOM_NONE)
        return;
    if (piece->bytes_after > 0)
        xcb_delete_property(connection->get(), requestor, asked.property);
    silence.start();
    const int length = xcb_get_property_value_length(piece.get());
    if (length == 0) {
        silence.stop();
        asked.inPieces = false;
    }
    foreignDrag.pieceArrived(asked.question,
                             QByteArray(static_cast<const char *>(xcb_get_property_value(piece.get())), length));
}

void ForeignDragWatcher::ask(ForeignDrag::Question question, ForeignDrag::Target target, xcb_timestamp_t time)
{
    asked = {.question = question,
             .target = nameOf(target),
             .time = time,
             .property = answerProperties[question % answerProperties.size()],
             .inPieces = false};
    xcb_convert_selection(connection->get(), requestor, selection, asked.target, asked.property, time);
    connection->flush();
    silence.start();
}

xcb_atom_t ForeignDragWatcher::nameOf(ForeignDrag::Target target) const
{
    switch (target) {
    case ForeignDrag::Target::Offers:
        return targets;
    case ForeignDrag::Target::Link:
        return link;
    case ForeignDrag::Target::URIList:
        break;
    }
    return uriList;
}

void ForeignDragWatcher::followPointer()
{
    selectPointerEvents(kPointerEvents);
    watchdog.start();
}

void ForeignDragWatcher::ignorePointer()
{
    selectPointerEvents(0);
    watchdog.stop();
    silence.stop();
}

void ForeignDragWatcher::selectPointerEvents(quint32 mask)
{
    const struct {
        xcb_input_event_mask_t head;
        quint32 mask;
    } selected{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, mask};
    xcb_input_xi_select_events(connection->get(), connection->root(), 1, &selected.head);
    connection->flush();
}

void ForeignDragWatcher::endUnlessLeftButtonDown()
{
    if (foreignDrag.isInProgress() && !isLeftButtonDown())
        foreignDrag.end();
}

bool ForeignDragWatcher::isLeftButtonDown()
{
    const auto pointer =
        connection->reply(xcb_query_pointer_reply, xcb_query_pointer(connection->get(), connection->root()));
    return pointer && (pointer->mask & XCB_KEY_BUT_MASK_BUTTON_1) != 0;
}
