// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QUrl>

// What the drag now in progress in another application carries. Reads look into memory and never block.
class DragPasteboard {
public:
    virtual ~DragPasteboard() = default;

    // Moves each time another application has begun a drag and what it carries is known.
    virtual qint64 changeCount() const = 0;

    // All file URLs of that drag, in its order; empty when it carries anything else or its source did not answer.
    virtual QList<QUrl> fileURLs() const = 0;
};
