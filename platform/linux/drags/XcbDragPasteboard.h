// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DragPasteboard.h"

#include <memory>

class ForeignDragWatcher;

// The files of the drag that is in progress in another program, as the watcher has read them.
class XcbDragPasteboard : public DragPasteboard {
public:
    explicit XcbDragPasteboard(std::shared_ptr<const ForeignDragWatcher> watcher);

    qint64 changeCount() const override;
    QList<QUrl> fileURLs() const override;

private:
    std::shared_ptr<const ForeignDragWatcher> watcher;
};
