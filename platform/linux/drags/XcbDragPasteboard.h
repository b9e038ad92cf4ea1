// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DragPasteboard.h"

#include <memory>

class ForeignDragWatcher;

// What the watcher has read from the drag now in progress in another program.
class XcbDragPasteboard : public DragPasteboard {
public:
    explicit XcbDragPasteboard(std::shared_ptr<const ForeignDragWatcher> watcher);

    qint64 changeCount() const override;
    QList<QUrl> fileURLs() const override;

private:
    std::shared_ptr<const ForeignDragWatcher> watcher;
};
