// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QUrl>

// The files of the drag in progress in another application. Reads never block.
class DragPasteboard {
public:
    virtual ~DragPasteboard() = default;

    // Changes each time another application has begun a drag and its files are known.
    virtual qint64 changeCount() const = 0;

    // All file URLs of that drag, in its order. Empty when it carries anything else, or its source did not answer.
    virtual QList<QUrl> fileURLs() const = 0;
};
