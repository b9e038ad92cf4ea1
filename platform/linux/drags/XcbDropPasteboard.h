// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DropPasteboard.h"
#include "platform/linux/x11/XcbConnection.h"

#include <QAbstractNativeEventFilter>
#include <QByteArray>
#include <QElapsedTimer>
#include <QTimer>

#include <array>
#include <chrono>
#include <deque>
#include <memory>
#include <vector>

// Drops of other programs onto windows of this one. Qt would block while it reads what a drop carries. So this class
// takes the drop's message before Qt receives it, reads the contents, and sends the message again. If a source takes
// too long, it is told that the drop has failed, and Qt that the drag has left.
class XcbDropPasteboard : public DropPasteboard, public QAbstractNativeEventFilter {
public:
    static constexpr std::chrono::milliseconds kPatience{5000};

    explicit XcbDropPasteboard(std::shared_ptr<XcbConnection> connection,
                               std::chrono::milliseconds patience = kPatience);
    ~XcbDropPasteboard() override;

    // Asked whether the drag in progress is known to carry no file.
    std::function<bool()> onWithoutFiles;

    QList<QUrl> fileURLs(const QMimeData *data) const override;
    bool isDragWithoutFiles() const override { return onWithoutFiles && onWithoutFiles(); }
    bool isReading() const override { return !held.empty() || !resent.empty(); }

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

private:
    using Message = xcb_client_message_event_t;

    bool takes(const Message &message);
    std::vector<xcb_atom_t> offeredTypes() const;
    void read(const Message &drop);
    void handle(const xcb_generic_event_t &event);
    void answered(const xcb_selection_notify_event_t &event);
    void pieceArrived(const xcb_property_notify_event_t &event);
    XcbReply<xcb_get_property_reply_t> takeProperty();
    void deliver();
    void giveUp();
    void sendHeld();

    std::shared_ptr<XcbConnection> connection;
    XcbConnection::Subscription subscription;
    xcb_window_t requestor = XCB_NONE;
    std::array<xcb_atom_t, 8> properties{}; // for the answers, in turn, so that a late answer is recognised
    std::size_t reads = 0;
    xcb_atom_t enter = XCB_ATOM_NONE;
    xcb_atom_t position = XCB_ATOM_NONE;
    xcb_atom_t leave = XCB_ATOM_NONE;
    xcb_atom_t drop = XCB_ATOM_NONE;
    xcb_atom_t finished = XCB_ATOM_NONE;
    xcb_atom_t selection = XCB_ATOM_NONE;
    xcb_atom_t uriList = XCB_ATOM_NONE;
    xcb_atom_t link = XCB_ATOM_NONE;
    xcb_atom_t pieceWise = XCB_ATOM_NONE;

    Message entered{};                 // the XdndEnter of the last drag
    std::deque<Message> held;          // a drop that is being read, and the messages after it
    std::deque<Message> resent;        // sent again and not yet received
    QElapsedTimer sent;                // since the last message was sent again
    xcb_atom_t target = XCB_ATOM_NONE; // the type that the source is asked for
    bool inPieces = false;
    bool isKnown = false;      // whether `files` holds what the drop carries
    bool isDelivering = false; // Qt is handling the drop
    QByteArray pieces;
    QList<QUrl> files;
    QTimer silence;
};
