// SPDX-License-Identifier: MIT
#include "shelf/DropTarget.h"

#include "platform/FileURLs.h"

#include <QDragEnterEvent>
#include <QMimeData>

namespace {

// Where a copy is not on offer, Qt would answer with what is: told of a move, the source deletes its file, which the
// shelf only refers to. Our own drags delete nothing, whatever they offer.
bool offersCopy(const QDropEvent &event)
{
    return event.possibleActions().testFlag(Qt::CopyAction) || event.source() != nullptr;
}

// Copy is said outright: taking over what the source proposes could mean a move, and the shelf never moves a file.
void answerCopy(QDropEvent *event)
{
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(offersCopy(*event));
}

} // namespace

void DropTarget::draggingEntered(QDragEnterEvent *event)
{
    if (!event->mimeData()->hasUrls() || !offersCopy(*event)) {
        event->ignore();
        return;
    }
    highlight(true);
    answerCopy(event);
}

void DropTarget::draggingUpdated(QDragMoveEvent *event)
{
    // A key that is pressed on the way may change what is on offer.
    answerCopy(event);
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
    if (urls.isEmpty() || !offersCopy(*event)) {
        event->ignore();
        return;
    }
    if (onDrop)
        onDrop(urls);
    answerCopy(event);
}

void DropTarget::highlight(bool on)
{
    if (onHighlight)
        onHighlight(on);
}
