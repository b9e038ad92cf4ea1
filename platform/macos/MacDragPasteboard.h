// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DragPasteboard.h"

// The system's drag pasteboard. It keeps the contents of a drag after its end, and has those of our own drags too.
// Neither counts as a drag in progress in another application.
class MacDragPasteboard : public DragPasteboard {
public:
    MacDragPasteboard();

    qint64 changeCount() const override;
    QList<QUrl> fileURLs() const override;

    // Ignores the present contents.
    void ignoreContents();

private:
    qint64 ignored = 0;       // the change count of the ignored contents
    mutable qint64 known = 0; // the last change count that is not ignored
};
