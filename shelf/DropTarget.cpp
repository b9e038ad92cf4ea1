// SPDX-License-Identifier: MIT
#include "shelf/DropTarget.h"

#include "platform/OwnDrag.h"

#include <QDragEnterEvent>
#include <QMimeData>

namespace {

// Without a copy on offer Qt would answer with another action. A source that is told "move" deletes its file, which the
// shelf only refers to. The shelf's own drags never delete anything.
bool offersCopy(const QDropEvent &event)
{
    return event.possibleActions().testFlag(Qt::CopyAction) || isOwnDrag(event);
}

// Set copy explicitly: the action that the source proposes could be a move, and the shelf never moves a file.
void answerCopy(QDropEvent *event)
{
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(offersCopy(*event));
}

} // namespace

void DropTarget::draggingEntered(QDragEnterEvent *event)
{
    if (!event->mimeData()->hasUrls() || isWithoutFiles() || !offersCopy(*event)) {
        event->ignore();
        return;
    }
    setHighlighted(true);
    answerCopy(event);
}

void DropTarget::draggingUpdated(QDragMoveEvent *event)
{
    // Its source may tell only now what it carries.
    if (isWithoutFiles()) {
        setHighlighted(false);
        event->ignore();
        return;
    }
    // A modifier key may change the actions on offer during the drag.
    answerCopy(event);
}

void DropTarget::draggingExited(QDragLeaveEvent *event)
{
    setHighlighted(false);
    event->accept();
}

void DropTarget::performDragOperation(QDropEvent *event)
{
    setHighlighted(false);
    const QList<QUrl> urls = readFileURLs(event->mimeData());
    if (urls.isEmpty() || !offersCopy(*event)) {
        event->ignore();
        return;
    }
    if (onDrop)
        onDrop(urls);
    answerCopy(event);
}

void DropTarget::setHighlighted(bool on)
{
    if (onHighlight)
        onHighlight(on);
}
