// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DragSessions.h"

#include <QObject>

class MacDragPasteboard;
class SystemAppearance;

// Drags out as Qt's own, which keeps its windows in step with the mouse button.
class MacDragSessions : public QObject, public DragSessions {
public:
    // `pasteboard` is told that what a drag of ours has put on it is ours.
    MacDragSessions(MacDragPasteboard &pasteboard, const SystemAppearance &appearance);

    void begin(QWidget &source, const QList<DraggingItem> &items, DragOperation offered, Ended ended) override;

private:
    MacDragPasteboard &dragPasteboard;
    const SystemAppearance &systemAppearance;
    bool isRunning = false;
};
