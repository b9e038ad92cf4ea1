// SPDX-License-Identifier: MIT
#include "platform/common/QtDrags.h"

#include <QMimeData>

Qt::DropAction dropAction(DragOperation operation)
{
    switch (operation) {
    case DragOperation::Copy:
        return Qt::CopyAction;
    case DragOperation::Move:
        return Qt::MoveAction;
    case DragOperation::Link:
        return Qt::LinkAction;
    case DragOperation::None:
        break;
    }
    return Qt::IgnoreAction;
}

DragOperation dragOperation(Qt::DropAction action)
{
    switch (action) {
    case Qt::CopyAction:
        return DragOperation::Copy;
    case Qt::MoveAction:
    case Qt::TargetMoveAction:
        return DragOperation::Move;
    case Qt::LinkAction:
        return DragOperation::Link;
    default:
        return DragOperation::None;
    }
}

std::unique_ptr<QMimeData> uriList(const QList<DraggingItem> &items)
{
    QList<QUrl> urls;
    urls.reserve(items.size());
    for (const DraggingItem &item : items)
        urls.append(item.fileURL);
    auto data = std::make_unique<QMimeData>();
    data->setUrls(urls);
    return data;
}
