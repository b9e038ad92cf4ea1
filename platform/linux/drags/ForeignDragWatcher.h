// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/drags/BridgedDragPoll.h"
#include "platform/linux/drags/DragBridge.h"
#include "platform/linux/drags/ForeignDrag.h"
#include "platform/linux/x11/XcbConnection.h"

#include <QObject>
#include <QPointF>
#include <QTimer>

#include <array>
#include <functional>
#include <memory>
#include <optional>

// Watches the X server for drags in other programs and reads what they carry. It receives no mouse events until a drag
// begins, so the program sleeps between drags.
//
// The X server of a Wayland compositor reports neither button nor pointer during a drag of a native program. Such a
// drag is called bridged: the compositor owns it on the X server, and is asked whether it is still in progress.
class ForeignDragWatcher : public QObject {
public:
    explicit ForeignDragWatcher(const std::shared_ptr<XcbConnection> &connection);
    // The same, with a given bridge.
    ForeignDragWatcher(std::shared_ptr<XcbConnection> connection, const DragBridge &bridge);
    ~ForeignDragWatcher() override;

    // Begins to watch, until the destructor. False when the server cannot report drags of other programs.
    bool start();

    const ForeignDrag &drag() const { return foreignDrag; }

    // Whether the drag in progress belongs to a native program of a Wayland session.
    bool isBridged() const { return bridged && foreignDrag.isInProgress(); }

    // The pointer during a bridged drag, in points of Qt (origin at the top left), if a window of this program has
    // received it.
    std::optional<QPointF> bridgedPointer() const { return pointer; }
    void bridgedPointerMoved(std::optional<QPointF> position);

    // During a drag: the pointer moved, or the source has told what the drag carries.
    std::function<void()> onDragged;
    // Called once for each drag: the left button was released, or the drag is over for another reason.
    std::function<void()> onEnded;

private:
    // The question to the source of the drag in progress.
    struct Asked {
        ForeignDrag::Question question = 0;
        xcb_atom_t target = XCB_ATOM_NONE;
        xcb_timestamp_t time = XCB_CURRENT_TIME;
        xcb_atom_t property = XCB_ATOM_NONE; // where the source puts the answer
        bool inPieces = false;
    };

    bool speaksExtensions();
    void makeRequestor();
    void handle(const xcb_generic_event_t &event);
    void selectionChanged(xcb_window_t owner, xcb_timestamp_t time);
    void inputHappened(const xcb_ge_generic_event_t &event);
    void selectionAnswered(const xcb_selection_notify_event_t &event);
    void propertyChanged(const xcb_property_notify_event_t &event);

    void ask(ForeignDrag::Question question, ForeignDrag::Target target, xcb_timestamp_t time);
    xcb_atom_t nameOf(ForeignDrag::Target target) const;
    void takeOffers(const xcb_get_property_reply_t &offers);
    void beginBridged(xcb_timestamp_t time);
    void followPointer();
    void ignorePointer();
    void selectPointerEvents(quint32 mask);
    void endUnlessLeftButtonDown();
    bool isLeftButtonDown();

    std::shared_ptr<XcbConnection> connection;
    XcbConnection::Subscription subscription;
    DragBridge bridge;
    BridgedDragPoll poll;
    ForeignDrag foreignDrag;
    bool bridged = false;             // the drag in progress or the last one
    quint32 began = XCB_CURRENT_TIME; // when the bridged drag began
    std::optional<QPointF> pointer;   // during a bridged drag
    bool isWatching = false;
    quint8 inputExtension = 0;         // the major opcode of XInput
    quint8 selectionEvent = 0;         // the event type of XFixes
    xcb_window_t requestor = XCB_NONE; // the window to which sources answer
    xcb_atom_t selection = XCB_ATOM_NONE;
    xcb_atom_t uriList = XCB_ATOM_NONE;
    xcb_atom_t targets = XCB_ATOM_NONE;
    xcb_atom_t link = XCB_ATOM_NONE;
    xcb_atom_t pieceWise = XCB_ATOM_NONE;
    std::array<xcb_atom_t, 8> answerProperties{};
    Asked asked;
    QTimer silence;  // fires when the source has sent nothing for too long
    QTimer watchdog; // notices the end of a drag that no event reports
};
