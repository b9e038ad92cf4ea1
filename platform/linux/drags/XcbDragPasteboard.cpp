// SPDX-License-Identifier: MIT
#include "platform/linux/drags/XcbDragPasteboard.h"

#include "platform/linux/drags/ForeignDragWatcher.h"

#include <utility>

XcbDragPasteboard::XcbDragPasteboard(std::shared_ptr<const ForeignDragWatcher> dragWatcher)
    : watcher(std::move(dragWatcher))
{
}

qint64 XcbDragPasteboard::changeCount() const
{
    return watcher->drag().changeCount();
}

QList<QUrl> XcbDragPasteboard::fileURLs() const
{
    return watcher->drag().fileURLs();
}
