// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QUrl>

#include <functional>

class QDragEnterEvent;
class QDragLeaveEvent;
class QDragMoveEvent;
class QDropEvent;

// What the shelf's views that take file drops have in common. A view forwards its drag events to these. Drags that
// carry no URLs at all, or may not be copied, pass by; every other one is answered with copy, and the drop decides.
class DropTarget {
public:
    // Receives the files of a drop, never an empty list.
    std::function<void(const QList<QUrl> &urls)> onDrop;

    // Told true when a drag enters and false when it leaves or drops.
    std::function<void(bool on)> onHighlight;

protected:
    ~DropTarget() = default;

    void draggingEntered(QDragEnterEvent *event);
    void draggingUpdated(QDragMoveEvent *event);
    void draggingExited(QDragLeaveEvent *event);
    void performDragOperation(QDropEvent *event);

private:
    void highlight(bool on);
};
