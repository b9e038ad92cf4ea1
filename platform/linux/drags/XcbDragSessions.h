// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DragSessions.h"
#include "platform/linux/drags/DragBridge.h"
#include "platform/linux/drags/XdndTarget.h"
#include "platform/linux/x11/XcbConnection.h"

#include <QAbstractNativeEventFilter>
#include <QByteArray>
#include <QColor>
#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QDrag;

// Drags out of this application by the XDND protocol. Qt runs the drag itself but reports what the destination
// promised; what it did is heard here, from the message with which it finishes.
//
// A Wayland compositor takes a drag over to native windows, but asks for it in ways that Qt refuses: it wants to know
// what is offered, names times of its own, and some windows ask only after the drop. So it is answered here.
class XcbDragSessions : public QObject, public DragSessions, private QAbstractNativeEventFilter {
public:
    // How long to wait for a destination's last word, in seconds.
    struct Patience {
        // As long as Qt keeps what a dropped drag carries.
        double delivered = 600;
        // When nobody seems to have been there to take the drop.
        double undelivered = 3;
        // When the destination's window has gone: its last word may still be on its way.
        double destroyed = 1;
        // When a Wayland compositor has been given the list: for many native windows it says no last word.
        double read = 1;
    };

    // `accentColor` is asked at the start of each drag. Without a connection no drag begins.
    XcbDragSessions(const std::shared_ptr<XcbConnection> &connection, std::function<QColor()> accentColor);
    XcbDragSessions(const std::shared_ptr<XcbConnection> &connection, std::function<QColor()> accentColor,
                    Patience patience);
    // The same with what is known of a compositor.
    XcbDragSessions(std::shared_ptr<XcbConnection> connection, std::function<QColor()> accentColor, Patience patience,
                    const DragBridge &bridge);
    ~XcbDragSessions() override;

    void begin(QWidget &source, const QList<DraggingItem> &items, DragOperation offered, Ended ended) override;

private:
    // The drag that follows the pointer now.
    struct Running {
        std::optional<XdndTarget> target;      // where the button was last released
        xcb_window_t lastAccepting = XCB_NONE; // whose last answer was that it takes the drop
        std::optional<DragOperation> finished; // what the destination did, should it be that quick
        DragOperation offered = DragOperation::None;
        bool isBridged = false;         // the button was released over a native window
        bool isRead = false;            // a compositor has been given the list
        QByteArray list;                // what it carries, as a compositor asks for it
        xcb_window_t source = XCB_NONE; // the window in whose name Qt drags, once a destination has answered it
    };

    // A drop whose destination has not told yet what it did.
    struct Waiting {
        quint64 id;
        Running drag;
        QPointer<QDrag> contents;
        Ended ended;
        quint64 deadline = 0; // the one that holds; earlier ones pass unheeded
    };

    bool nativeEventFilter(const QByteArray &source, void *message, qintptr *result) override;
    void released(const QPoint &position);
    Running *dragAskedFor();
    bool requested(const xcb_selection_request_event_t &request);
    void haveUserAsked(xcb_window_t target);
    void answered(const xcb_client_message_event_t &status);
    void finished(const xcb_client_message_event_t &message);
    void windowDestroyed(xcb_window_t window);

    quint64 wait(const Running &drag, QDrag *contents, Ended ended);
    void giveUpIn(double seconds, Waiting &drop);
    void settle(quint64 id, DragOperation operation);
    void settleUndelivered();

    std::optional<DragOperation> operationOf(xcb_atom_t action);

    std::shared_ptr<XcbConnection> connection;
    DragBridge bridge;
    std::function<QColor()> accentColor;
    Patience patience;
    XcbConnection::Subscription subscription;
    quint8 inputExtension = 0; // the major opcode of XInput, 0 without
    Running *running = nullptr;
    std::vector<Waiting> waiting;
    quint64 lastId = 0;
    quint64 lastDeadline = 0;
};
