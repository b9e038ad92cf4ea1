// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QUrl>

class QMimeData;

// What is dropped onto a window of this program.
class DropPasteboard {
public:
    virtual ~DropPasteboard() = default;

    // All file URLs of the drop that is being delivered with `data`, in their order; empty when it carries anything
    // else. Never waits for the drop's source: a drop is delivered once its source has answered, and left out when that
    // takes too long.
    virtual QList<QUrl> fileURLs(const QMimeData *data) const = 0;

    // Whether the drag over a window of ours is known to carry no file at all; false when in doubt.
    virtual bool isDragWithoutFiles() const { return false; }

    // Whether the user has dropped something that is still to be delivered.
    virtual bool isReading() const = 0;
};
