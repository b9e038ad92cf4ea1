// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DragPasteboard.h"

// The system's drag pasteboard. What a drag has put there stays after the drag, and a drag of our own goes there too;
// neither is a drag of another application that is in progress.
class MacDragPasteboard : public DragPasteboard {
public:
    MacDragPasteboard();

    qint64 changeCount() const override;
    QList<QUrl> fileURLs() const override;

    // Leaves out what is there now.
    void ignoreContents();

private:
    qint64 ignored = 0;       // the change count whose contents are left out
    mutable qint64 known = 0; // the last one that is not
};
