// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DropPasteboard.h"
#include "platform/linux/x11/SelectionReader.h"
#include "platform/linux/x11/XcbConnection.h"

#include <QAbstractNativeEventFilter>
#include <QByteArray>
#include <QElapsedTimer>
#include <QObject>

#include <chrono>
#include <deque>
#include <memory>
#include <vector>

// Drops of other programs onto windows of this one. Qt would block while it reads what a drop carries. So this class
// takes the drop's message before Qt receives it, reads the contents, and sends the message again. If a source takes
// too long, it is told that the drop has failed, and Qt that the drag has left.
class XcbDropPasteboard : public DropPasteboard, public QAbstractNativeEventFilter {
public:
    explicit XcbDropPasteboard(std::shared_ptr<XcbConnection> connection,
                               std::chrono::milliseconds patience = SelectionReader::kPatience);

    // Asked whether the drag in progress is known to carry no file.
    std::function<bool()> onWithoutFiles;

    QList<QUrl> fileURLs(const QMimeData *data) const override;
    bool isDragWithoutFiles() const override { return onWithoutFiles && onWithoutFiles(); }
    bool isReading() const override { return !held.empty() || !resent.empty(); }

    // Whether a drag is over a window of ours, or was dropped there and is still to be delivered.
    bool isExpecting();
    // isExpecting() may have become false.
    std::function<void()> onArrived;

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

private:
    using Message = xcb_client_message_event_t;

    bool takes(const Message &message);
    void follow(const Message &message);
    void tellArrived();
    std::vector<xcb_atom_t> offeredTypes() const;
    void read(const Message &drop);
    void deliver(const QByteArray &answer);
    void giveUp();
    void sendHeld();

    std::shared_ptr<XcbConnection> connection;
    SelectionReader reader;
    QObject context; // of calls that come later
    xcb_atom_t enter = XCB_ATOM_NONE;
    xcb_atom_t position = XCB_ATOM_NONE;
    xcb_atom_t leave = XCB_ATOM_NONE;
    xcb_atom_t drop = XCB_ATOM_NONE;
    xcb_atom_t finished = XCB_ATOM_NONE;
    xcb_atom_t selection = XCB_ATOM_NONE;
    xcb_atom_t uriList = XCB_ATOM_NONE;
    xcb_atom_t link = XCB_ATOM_NONE;

    Message entered{};                 // the XdndEnter of the last drag
    xcb_window_t over = XCB_NONE;      // the source of the drag that is over a window of ours
    std::deque<Message> held;          // a drop that is being read, and the messages after it
    std::deque<Message> resent;        // sent again and not yet received
    QElapsedTimer sent;                // since the last message was sent again
    xcb_atom_t target = XCB_ATOM_NONE; // the type that the source is asked for
    bool isKnown = false;              // whether `files` holds what the drop carries
    bool isDelivering = false;         // Qt is handling the drop
    QList<QUrl> files;
};
