// SPDX-License-Identifier: MIT
#include "platform/linux/drags/XcbDragSessions.h"

#include "platform/common/DragPicture.h"
#include "platform/common/QtDrags.h"
#include "platform/linux/drags/DragWindowSetup.h"
#include "platform/linux/drags/DropAnswer.h"
#include "platform/linux/drags/EscapeGrab.h"

#include <QCursor>
#include <QDrag>
#include <QGuiApplication>
#include <QMimeData>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include <xcb/xinput.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

namespace {

constexpr char kURIList[] = "text/uri-list";
// The sizes of a property's elements, in bits.
constexpr quint8 kBytes = 8;
constexpr quint8 kLongs = 32;
// The X server reports turns of the wheel as presses of these buttons.
constexpr quint32 kFirstWheelButton = 4;
constexpr quint32 kLastWheelButton = 7;

bool isWheel(quint32 button)
{
    return button >= kFirstWheelButton && button <= kLastWheelButton;
}

QPoint wholePixels(xcb_input_fp1616_t x, xcb_input_fp1616_t y)
{
    return {x >> 16, y >> 16};
}

// Whether a window passes drops to the windows below it, as the window with the picture of the drag does.
bool letsDropsThrough(xcb_window_t window)
{
    return std::ranges::any_of(QGuiApplication::allWindows(), [window](const QWindow *own) {
        return own->handle() && isDragWindow(*own) && own->winId() == window;
    });
}

} // namespace

XcbDragSessions::XcbDragSessions(const std::shared_ptr<XcbConnection> &xcb, std::function<QColor()> accent)
    : XcbDragSessions(xcb, std::move(accent), Patience())
{
}

XcbDragSessions::XcbDragSessions(const std::shared_ptr<XcbConnection> &xcb, std::function<QColor()> accent,
                                 Patience waits)
    : XcbDragSessions(xcb, std::move(accent), waits, DragBridge(xcb))
{
}

XcbDragSessions::XcbDragSessions(std::shared_ptr<XcbConnection> xcb, std::function<QColor()> accent, Patience waits,
                                 const DragBridge &dragBridge)
    : connection(std::move(xcb))
    , bridge(dragBridge)
    , accentColor(std::move(accent))
    , patience(waits)
{
    if (!connection)
        return;
    const xcb_query_extension_reply_t *input = xcb_get_extension_data(connection->get(), &xcb_input_id);
    if (input && input->present != 0)
        inputExtension = input->major_opcode;
    subscription = connection->listen([this](const xcb_generic_event_t &event) {
        if (eventType(event) == XCB_DESTROY_NOTIFY)
            windowDestroyed(reinterpret_cast<const xcb_destroy_notify_event_t &>(event).window);
    });
    qGuiApp->installNativeEventFilter(this);
}

XcbDragSessions::~XcbDragSessions() = default;

void XcbDragSessions::begin(QWidget &source, const QList<DraggingItem> &items, DragOperation offered, Ended ended)
{
    if (!connection || running || items.isEmpty() || offered == DragOperation::None)
        return;

    const bool blends = connection->hasCompositor();
    const DragPicture picture =
        dragPicture(items, source.mapFromGlobal(QPointF(QCursor::pos())),
                    {.scale = source.devicePixelRatioF(), .accent = accentColor(), .blends = blends});
    // Qt keeps the drag for a destination that reads it later, and deletes it. A drag whose parent is deleted before
    // its end never ends; this object outlives `source`.
    auto *drag = new QDrag(this);
    auto contentsOfDrag = uriList(items);
    Running session;
    session.offered = offered;
    lastList = contentsOfDrag->data(QLatin1String(kURIList));
    drag->setMimeData(contentsOfDrag.release());
    drag->setPixmap(picture.pixmap);
    drag->setHotSpot(picture.hotSpot);

    running = &session;
    const QPointer<XcbDragSessions> alive(this);
    const QPointer<QDrag> contents(drag);
    settleUndelivered();
    if (!alive)
        return;
    Qt::DropAction promised = Qt::IgnoreAction;
    {
        const DragWindowSetup setup(picture.pixmap, blends);
        // The panels of this program never have the focus, so another program would receive Escape.
        const EscapeGrab escape(connection, [] { QDrag::cancel(); });
        promised = drag->exec(dropAction(offered), dropAction(offered));
    }
    if (!alive)
        return;
    running = nullptr;

    if (promised == Qt::IgnoreAction) {
        ended(DragOperation::None);
    } else if (session.target && connection->isOwn(session.target->window)) {
        // The destination is a window of this program and has already answered.
        ended(dragOperation(promised));
    } else {
        session.isBridged = session.target && bridge.owns(session.target->receiver);
        const quint64 id = wait(session, contents, std::move(ended));
        if (session.finished)
            settle(id, *session.finished);
    }
}

bool XcbDragSessions::nativeEventFilter(const QByteArray &source, void *message, qintptr *)
{
    if (source != "xcb_generic_event_t")
        return false;
    const auto &event = *static_cast<const xcb_generic_event_t *>(message);
    switch (eventType(event)) {
    case XCB_CLIENT_MESSAGE: {
        const auto &client = reinterpret_cast<const xcb_client_message_event_t &>(event);
        if (client.type == connection->atom("XdndStatus"))
            answered(client);
        else if (client.type == connection->atom("XdndFinished"))
            finished(client);
        break;
    }
    case XCB_SELECTION_REQUEST:
        // Qt must not see a request that is answered here, because it would refuse it.
        return requested(reinterpret_cast<const xcb_selection_request_event_t &>(event));
    case XCB_BUTTON_RELEASE: {
        const auto &release = reinterpret_cast<const xcb_button_release_event_t &>(event);
        if (!isWheel(release.detail))
            released({release.root_x, release.root_y});
        break;
    }
    case XCB_GE_GENERIC: {
        const auto &generic = reinterpret_cast<const xcb_ge_generic_event_t &>(event);
        if (generic.extension != inputExtension)
            break;
        if (generic.event_type == XCB_INPUT_BUTTON_RELEASE) {
            const auto &release = reinterpret_cast<const xcb_input_button_release_event_t &>(event);
            if (!isWheel(release.detail))
                released(wholePixels(release.root_x, release.root_y));
        } else if (generic.event_type == XCB_INPUT_TOUCH_END) {
            const auto &release = reinterpret_cast<const xcb_input_touch_end_event_t &>(event);
            released(wholePixels(release.root_x, release.root_y));
        }
        break;
    }
    default:
        break;
    }
    return false;
}

// This runs before Qt handles the release and drops, so the destination has not yet closed or moved its window.
void XcbDragSessions::released(const QPoint &position)
{
    if (!running)
        return;
    running->target = xdndTargetAt(*connection, position, letsDropsThrough);
    if (running->offered == DragOperation::Link && running->target && bridge.owns(running->target->receiver))
        haveUserAsked(running->target->receiver);
}

// Qt answers the requests of all other destinations. It is stricter: a source may refuse a program that is not its
// destination.
bool XcbDragSessions::requested(const xcb_selection_request_event_t &request)
{
    const xcb_atom_t targets = connection->atom("TARGETS");
    const xcb_atom_t list = connection->atom(kURIList);
    if (request.selection != connection->atom("XdndSelection") || (request.target != targets && request.target != list))
        return false;
    if (lastList.isNull() || !bridge.owns(request.requestor))
        return false;
    // Old clients leave the choice of the property to the owner.
    const xcb_atom_t property = request.property != XCB_ATOM_NONE ? request.property : request.target;
    if (request.target == targets) {
        const std::array<xcb_atom_t, 2> offers = {targets, list};
        xcb_change_property(connection->get(), XCB_PROP_MODE_REPLACE, request.requestor, property, XCB_ATOM_ATOM,
                            kLongs, quint32{offers.size()}, offers.data());
    } else {
        xcb_change_property(connection->get(), XCB_PROP_MODE_REPLACE, request.requestor, property, list, kBytes,
                            static_cast<quint32>(lastList.size()), lastList.constData());
    }
    xcb_selection_notify_event_t answer = {};
    answer.response_type = XCB_SELECTION_NOTIFY;
    answer.time = request.time;
    answer.requestor = request.requestor;
    answer.selection = request.selection;
    answer.target = request.target;
    answer.property = property;
    xcb_send_event(connection->get(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char *>(&answer));
    connection->flush();
    if (request.target == list)
        wasRead();
    return true;
}

// Some windows ask only after the drop; the request then belongs to the last one.
void XcbDragSessions::wasRead()
{
    if (running) {
        running->isRead = true;
    } else if (!waiting.empty()) {
        waiting.back().drag.isRead = true;
        if (waiting.back().drag.isBridged)
            giveUpIn(patience.read, waiting.back());
    }
}

// Native Wayland windows cannot make links, and a compositor lets them copy instead. This asks the compositor to let
// the user choose.
void XcbDragSessions::haveUserAsked(xcb_window_t target)
{
    auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11 || running->source == XCB_NONE)
        return;
    xcb_client_message_event_t position = {};
    position.response_type = XCB_CLIENT_MESSAGE;
    position.format = kLongs;
    position.window = target;
    position.type = connection->atom("XdndPosition");
    position.data.data32[0] = running->source;
    position.data.data32[4] = connection->atom("XdndActionAsk");
    // Use Qt's connection, so that the message is in order with those that Qt sends.
    xcb_send_event(x11->connection(), 0, target, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char *>(&position));
    xcb_flush(x11->connection());
}

void XcbDragSessions::answered(const xcb_client_message_event_t &status)
{
    constexpr quint32 kAccepts = 1;
    if (!running)
        return;
    const xcb_window_t window = status.data.data32[0];
    running->source = status.window;
    if ((status.data.data32[1] & kAccepts) == 0) {
        if (running->lastAccepting == window)
            running->lastAccepting = XCB_NONE;
        return;
    }
    running->lastAccepting = window;
    if (running->offered == DragOperation::Link && status.data.data32[4] != connection->atom("XdndActionAsk") &&
        bridge.owns(window))
        haveUserAsked(window);
}

void XcbDragSessions::finished(const xcb_client_message_event_t &message)
{
    constexpr quint32 kAccepted = 1;
    const xcb_window_t window = message.data.data32[0];
    const DropAnswer answer{(message.data.data32[1] & kAccepted) != 0, operationOf(message.data.data32[2])};
    const auto concerns = [window](const Running &drop) {
        return window != XCB_NONE &&
               (drop.lastAccepting == window ||
                (drop.target && (drop.target->window == window || drop.target->receiver == window)));
    };
    const auto outcome = [&answer](const Running &drop) {
        return performedOperation(answer, drop.target ? drop.target->version : kXdndVersion, drop.offered);
    };
    // A destination finishes several drops on one window in their order.
    const auto drop = std::ranges::find_if(waiting, concerns, &Waiting::drag);
    if (drop != waiting.end())
        settle(drop->id, outcome(drop->drag));
    else if (running && running->target && concerns(*running))
        running->finished = outcome(*running);
}

void XcbDragSessions::windowDestroyed(xcb_window_t window)
{
    for (Waiting &drop : waiting) {
        if (drop.drag.target && drop.drag.target->receiver == window)
            giveUpIn(patience.destroyed, drop);
    }
}

quint64 XcbDragSessions::wait(const Running &drag, QDrag *contents, Ended ended)
{
    waiting.push_back({.id = ++lastId, .drag = drag, .contents = contents, .ended = std::move(ended)});
    const double whenRead = drag.isBridged && drag.isRead ? patience.read : patience.delivered;
    giveUpIn(drag.target ? whenRead : patience.undelivered, waiting.back());
    if (drag.target && drag.target->receiver != connection->root()) {
        constexpr quint32 mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
        const auto request =
            xcb_change_window_attributes_checked(connection->get(), drag.target->receiver, XCB_CW_EVENT_MASK, &mask);
        if (!connection->succeeded(request))
            giveUpIn(patience.destroyed, waiting.back());
    }
    return lastId;
}

void XcbDragSessions::giveUpIn(double seconds, Waiting &drop)
{
    drop.deadline = ++lastDeadline;
    const auto interval = std::chrono::round<std::chrono::milliseconds>(std::chrono::duration<double>(seconds));
    QTimer::singleShot(interval, this, [this, id = drop.id, deadline = drop.deadline] {
        const auto due = std::ranges::find(waiting, id, &Waiting::id);
        if (due == waiting.end() || due->deadline != deadline)
            return;
        // A native window that has accepted the drop, read the list and not refused it has taken the drop. When it was
        // to ask the user, the answer is unknown.
        const bool isTaken = due->drag.isBridged && due->drag.isRead && due->drag.offered != DragOperation::Link;
        settle(id, isTaken ? due->drag.offered : DragOperation::None);
    });
}

void XcbDragSessions::settle(quint64 id, DragOperation operation)
{
    const auto drop = std::ranges::find(waiting, id, &Waiting::id);
    if (drop == waiting.end())
        return;
    const Waiting settled = std::move(*drop);
    waiting.erase(drop);
    if (settled.drag.target && settled.drag.target->receiver != connection->root()) {
        const xcb_window_t window = settled.drag.target->receiver;
        const auto sameWindow = [window](const Waiting &other) {
            return other.drag.target && other.drag.target->receiver == window;
        };
        constexpr quint32 nothing = XCB_EVENT_MASK_NO_EVENT;
        if (std::ranges::none_of(waiting, sameWindow))
            xcb_change_window_attributes(connection->get(), window, XCB_CW_EVENT_MASK, &nothing);
    }
    // Qt does the same where it recognises the destination. The contents of an undelivered drop are no longer
    // available.
    if (settled.contents)
        settled.contents->deleteLater();
    settled.ended(operation);
}

void XcbDragSessions::settleUndelivered()
{
    std::vector<quint64> undelivered;
    for (const Waiting &drop : waiting) {
        if (!drop.drag.target)
            undelivered.push_back(drop.id);
    }
    for (const quint64 id : undelivered)
        settle(id, DragOperation::None);
}

std::optional<DragOperation> XcbDragSessions::operationOf(xcb_atom_t action)
{
    if (action == connection->atom("XdndActionCopy"))
        return DragOperation::Copy;
    if (action == connection->atom("XdndActionMove"))
        return DragOperation::Move;
    if (action == connection->atom("XdndActionLink"))
        return DragOperation::Link;
    return {};
}
