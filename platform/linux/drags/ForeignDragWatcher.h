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

// Watches the X server for drags in other programs and reads what they carry. Until one begins it hears nothing of the
// mouse at all, and the program sleeps.
//
// On the X server of a Wayland compositor a drag of a native program is the compositor's: it tells neither of the
// button nor of the pointer, and its end is asked for.
class ForeignDragWatcher : public QObject {
public:
    explicit ForeignDragWatcher(const std::shared_ptr<XcbConnection> &connection);
    // The same with what is known of the compositor.
    ForeignDragWatcher(std::shared_ptr<XcbConnection> connection, const DragBridge &bridge);
    ~ForeignDragWatcher() override;

    // Begins to watch; false when the server cannot tell of other programs' drags. Once watching it stays so.
    bool start();

    const ForeignDrag &drag() const { return foreignDrag; }

    // Whether the drag in progress is that of a native program of a Wayland session.
    bool isBridged() const { return bridged && foreignDrag.isInProgress(); }

    // Where the pointer is in a bridged drag, in the points of Qt, as far as a window of ours has been told.
    std::optional<QPointF> bridgedPointer() const { return pointer; }
    void bridgedPointerMoved(std::optional<QPointF> position);

    // While a drag is in progress: the pointer moved, or what is dragged became known.
    std::function<void()> onDragged;
    // Once for every drag: the left button went up, or the drag is over for another reason.
    std::function<void()> onEnded;

private:
    // One question to the source now dragging.
    struct Asked {
        ForeignDrag::Question question = 0;
        xcb_atom_t target = XCB_ATOM_NONE;
        xcb_timestamp_t time = XCB_CURRENT_TIME;
        xcb_atom_t property = XCB_ATOM_NONE; // where it puts the answer
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
    void followPointer(bool follow);
    void endUnlessLeftButtonDown();
    bool isLeftButtonDown();

    std::shared_ptr<XcbConnection> connection;
    XcbConnection::Subscription subscription;
    DragBridge bridge;
    BridgedDragPoll poll;
    ForeignDrag foreignDrag;
    bool bridged = false;             // the drag in progress or the last one
    quint32 began = XCB_CURRENT_TIME; // when a bridged one did
    std::optional<QPointF> pointer;   // in a bridged one
    bool isWatching = false;
    quint8 inputExtension = 0;         // the major opcode of XInput
    quint8 selectionEvent = 0;         // the type of XFixes' event
    xcb_window_t requestor = XCB_NONE; // sources answer to it
    xcb_atom_t selection = XCB_ATOM_NONE;
    xcb_atom_t uriList = XCB_ATOM_NONE;
    xcb_atom_t targets = XCB_ATOM_NONE;
    xcb_atom_t link = XCB_ATOM_NONE;
    xcb_atom_t pieceWise = XCB_ATOM_NONE;
    std::array<xcb_atom_t, 8> answerProperties{};
    Asked asked;
    QTimer silence;  // fires when the source has been mute for too long
    QTimer watchdog; // notices an end that no event tells of
};
