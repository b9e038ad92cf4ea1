// SPDX-License-Identifier: MIT
#include "shelf/DropTarget.h"

#include "platform/FileURLs.h"

#include <QDragEnterEvent>
#include <QMimeData>

namespace {

// Copy is said outright: taking over what the source proposes could mean a move, and the shelf never moves a file.
void acceptCopy(QDropEvent *event)
{
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

} // namespace

void DropTarget::draggingEntered(QDragEnterEvent *event)
{
    if (!event->mimeData()->hasUrls()) {
        event->ignore();
        return;
    }
    highlight(true);
    acceptCopy(event);
}

void DropTarget::draggingUpdated(QDragMoveEvent *event)
{
    acceptCopy(event);
}

void DropTarget::draggingExited(QDragLeaveEvent *event)
{
    highlight(false);
    event->accept();
}

void DropTarget::performDragOperation(QDropEvent *event)
{
    highlight(false);
    const QList<QUrl> urls = fileURLs(event->mimeData());
    if (urls.isEmpty()) {
        event->ignore();
        return;
    }
    if (onDrop)
        onDrop(urls);
    acceptCopy(event);
}

void DropTarget::highlight(bool on)
{
    if (onHighlight)
        onHighlight(on);
}
