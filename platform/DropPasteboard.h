// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QUrl>

class QMimeData;

// The contents of a drop onto a window of this program.
class DropPasteboard {
public:
    virtual ~DropPasteboard() = default;

    // All file URLs of the drop that is being delivered with `data`, in their order. Empty when it has anything else.
    // Never blocks: a drop is delivered after its source has answered, and is discarded when that takes too long.
    virtual QList<QUrl> fileURLs(const QMimeData *data) const = 0;

    // Whether the drag over a window of this program is known to carry no file. False when that is unknown.
    virtual bool isDragWithoutFiles() const { return false; }

    // Whether a drop has not been delivered yet.
    virtual bool isReading() const = 0;
};
