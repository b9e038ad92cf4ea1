// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FileURLs.h"

#include <functional>

class QDragEnterEvent;
class QDragLeaveEvent;
class QDragMoveEvent;
class QDropEvent;

// What the views that take file drops have in common. A view forwards its drag events to these functions. They refuse a
// drag without URLs, known to have no files or without the copy action, and accept any other as a copy; the drop checks
// that all are files.
class DropTarget {
public:
    // Receives the files of a drop, never an empty list.
    std::function<void(const QList<QUrl> &urls)> onDrop;

    // Reads the files of the drop that is delivered with `data`, as FileURLs.h says unless its owner knows better.
    std::function<QList<QUrl>(const QMimeData *data)> readFileURLs = [](const QMimeData *data) {
        return fileURLs(data);
    };

    // Whether the drag over the view is known to carry no file.
    std::function<bool()> isWithoutFiles = [] { return false; };

    // Told true when a drag enters and false when it leaves or drops.
    std::function<void(bool on)> onHighlight;

protected:
    ~DropTarget() = default;

    void draggingEntered(QDragEnterEvent *event);
    void draggingUpdated(QDragMoveEvent *event);
    void draggingExited(QDragLeaveEvent *event);
    void performDragOperation(QDropEvent *event);

private:
    void setHighlighted(bool on);
};
