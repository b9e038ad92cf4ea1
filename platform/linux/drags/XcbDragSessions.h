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

// Drags out of this program by the XDND protocol. Qt runs the drag but reports only what the destination promised. This
// class reads the destination's last message, which tells what it did.
//
// A Wayland compositor forwards a drag to native windows, but Qt refuses its requests: it asks which types are offered,
// uses times of its own, and for some windows asks only after the drop. This class answers them.
class XcbDragSessions : public QObject, public DragSessions, private QAbstractNativeEventFilter {
public:
    // How long to wait for a destination's last message, in seconds.
    struct Patience {
        // Qt keeps the contents of a drag for so long after the drop.
        double delivered = 600;
        // When no window seems to have taken the drop.
        double undelivered = 3;
        // When the destination's window is destroyed: its last message may still arrive.
        double destroyed = 1;
        // When a Wayland compositor has read the list: for many native windows it sends no last message.
        double read = 1;
    };

    // Calls `accentColor` at the start of each drag. With a null connection no drag begins.
    XcbDragSessions(const std::shared_ptr<XcbConnection> &connection, std::function<QColor()> accentColor);
    XcbDragSessions(const std::shared_ptr<XcbConnection> &connection, std::function<QColor()> accentColor,
                    Patience patience);
    // The same, with given times and a given bridge.
    XcbDragSessions(std::shared_ptr<XcbConnection> connection, std::function<QColor()> accentColor, Patience patience,
                    const DragBridge &bridge);
    ~XcbDragSessions() override;

    void begin(QWidget &source, const QList<DraggingItem> &items, DragOperation offered, Ended ended) override;

private:
    // The drag that now follows the pointer.
    struct Running {
        std::optional<XdndTarget> target;      // where the button was last released
        xcb_window_t lastAccepting = XCB_NONE; // the last window that answered that it accepts the drop
        std::optional<DragOperation> finished; // what the destination did, if it reported that before Qt returned
        DragOperation offered = DragOperation::None;
        bool isBridged = false; // the button was released over a native window
        bool isRead = false;    // a compositor has read the list
        xcb_window_t source =
            XCB_NONE; // the window that Qt uses as the source; known once a destination has answered it
    };

    // A drop whose destination has not yet reported what it did.
    struct Waiting {
        quint64 id;
        Running drag;
        QPointer<QDrag> contents;
        Ended ended;
        quint64 deadline = 0; // the number of the valid deadline; earlier ones are ignored
    };

    bool nativeEventFilter(const QByteArray &source, void *message, qintptr *result) override;
    void released(const QPoint &position);
    bool requested(const xcb_selection_request_event_t &request);
    void wasRead();
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
    quint8 inputExtension = 0; // the major opcode of XInput; 0 without the extension
    Running *running = nullptr;
    std::vector<Waiting> waiting;
    QByteArray lastList; // of the last drag, for a window that asks when the drop is long over
    quint64 lastId = 0;
    quint64 lastDeadline = 0;
};
