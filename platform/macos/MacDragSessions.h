// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DragSessions.h"

#include <memory>

class MacDragPasteboard;

// Drags out as dragging sessions of AppKit, with one item for each file. Qt's drags cannot be used: for a single file
// Qt calls a deprecated method, which raises an exception when the numbers of items and pictures differ.
class MacDragSessions : public DragSessions {
public:
    // `pasteboard` must ignore the contents of our own drags.
    explicit MacDragSessions(MacDragPasteboard &pasteboard);
    ~MacDragSessions() override;

    void begin(QWidget &source, const QList<DraggingItem> &items, DragOperation offered, Ended ended) override;
    bool isRunning() const;

private:
    struct Session;

    MacDragPasteboard &dragPasteboard;
    std::unique_ptr<Session> session; // the last session
};
