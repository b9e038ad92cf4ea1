// SPDX-License-Identifier: MIT
#include "platform/macos/MacDragSessions.h"

#include "platform/SystemAppearance.h"
#include "platform/common/DragPicture.h"
#include "platform/common/QtDrags.h"
#include "platform/macos/MacDragPasteboard.h"

#include <QCursor>
#include <QDrag>
#include <QMimeData>
#include <QPointer>
#include <QWidget>

MacDragSessions::MacDragSessions(MacDragPasteboard &pasteboard, const SystemAppearance &appearance)
    : dragPasteboard(pasteboard)
    , systemAppearance(appearance)
{
}

void MacDragSessions::begin(QWidget &source, const QList<DraggingItem> &items, DragOperation offered, Ended ended)
{
    if (isRunning || items.isEmpty() || offered == DragOperation::None)
        return;
    const DragPicture picture =
        dragPicture(items, source.mapFromGlobal(QPointF(QCursor::pos())),
                    {.scale = source.devicePixelRatioF(), .accent = systemAppearance.accentColor(), .blends = true});
    // Its parent outlives `source`, which may be deleted while the drag is under way.
    auto *drag = new QDrag(this);
    drag->setMimeData(uriList(items).release());
    drag->setPixmap(picture.pixmap);
    drag->setHotSpot(picture.hotSpot);

    const QPointer<MacDragSessions> alive(this);
    isRunning = true;
    const Qt::DropAction performed = drag->exec(dropAction(offered), dropAction(offered));
    if (!alive)
        return;
    isRunning = false;
    dragPasteboard.ignoreContents();
    ended(dragOperation(performed));
}
