// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DragSessions.h"

#include <memory>

class MacDragPasteboard;

// Drags out as AppKit's own sessions, of one item a file. Qt's drags are none: a single file would go by a call that is
// deprecated and raises an exception when items and pictures differ in number.
class MacDragSessions : public DragSessions {
public:
    // `pasteboard` is told that what a drag of ours has put on it is ours.
    explicit MacDragSessions(MacDragPasteboard &pasteboard);
    ~MacDragSessions() override;

    void begin(QWidget &source, const QList<DraggingItem> &items, DragOperation offered, Ended ended) override;
    bool isRunning() const;

private:
    struct Session;

    MacDragPasteboard &dragPasteboard;
    std::unique_ptr<Session> session; // the latest one
};
