// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FileURLs.h"

#include <functional>

class QDragEnterEvent;
class QDragLeaveEvent;
class QDragMoveEvent;
class QDropEvent;

// The common part of the views that accept file drops. A view forwards its drag events to these functions. They refuse
// a drag without URLs, without the copy action or known to have no files, and accept any other as a copy; the drop
// checks that all URLs are files.
class DropTarget {
public:
    // Receives the files of a drop, never an empty list.
    std::function<void(const QList<QUrl> &urls)> onDrop;

    // Reads the files of the drop that is delivered with `data`. By default it uses fileURLs() of FileURLs.h.
    std::function<QList<QUrl>(const QMimeData *data)> readFileURLs = [](const QMimeData *data) {
        return fileURLs(data);
    };

    // Whether the drag over the view is known to carry no file.
    std::function<bool()> isWithoutFiles = [] { return false; };

    // Called with true when a drag enters, and with false when it leaves or is dropped.
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
