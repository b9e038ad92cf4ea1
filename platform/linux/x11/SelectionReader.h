// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/x11/XcbConnection.h"

#include <QByteArray>
#include <QTimer>

#include <array>
#include <chrono>
#include <functional>
#include <memory>

// Reads what another program offers in a selection, without waiting for it; one thing at a time. No more is read of
// it than a list of addresses can need.
class SelectionReader {
public:
    static constexpr std::chrono::milliseconds kPatience{5000};

    // Null or dead, the connection makes a reader that reads nothing.
    SelectionReader(std::shared_ptr<XcbConnection> connection, std::chrono::milliseconds patience);
    ~SelectionReader();
    SelectionReader(const SelectionReader &) = delete;
    SelectionReader &operator=(const SelectionReader &) = delete;

    // Asks the owner of `selection` for `target`, and for nothing else any more. Calls `answered` with what it has,
    // which is nothing when it refuses, or `silent` when it has not answered within the reader's patience.
    void read(xcb_atom_t selection, xcb_atom_t target, xcb_timestamp_t time,
              std::function<void(const QByteArray &)> answered, std::function<void()> silent);

    // Calls neither.
    void cancel();

    bool isReading() const { return silence.isActive(); }

private:
    void handle(const xcb_generic_event_t &event);
    void ownerAnswered(const xcb_selection_notify_event_t &event);
    void pieceArrived(const xcb_property_notify_event_t &event);
    XcbReply<xcb_get_property_reply_t> takeProperty();
    void finish();

    std::shared_ptr<XcbConnection> connection;
    XcbConnection::Subscription subscription;
    xcb_window_t requestor = XCB_NONE;
    std::array<xcb_atom_t, 8> properties{}; // for the answers, in turn, so that a late answer is recognised
    std::size_t reads = 0;
    xcb_atom_t pieceWise = XCB_ATOM_NONE;

    xcb_atom_t selection = XCB_ATOM_NONE;
    xcb_atom_t target = XCB_ATOM_NONE;
    std::function<void(const QByteArray &)> answered;
    std::function<void()> silent;
    bool inPieces = false;
    QByteArray pieces;
    QTimer silence;
};
