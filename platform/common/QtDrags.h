// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DragSessions.h"

#include <memory>

class QMimeData;

// What drags through Qt have in common on every desktop.

Qt::DropAction dropAction(DragOperation operation);
DragOperation dragOperation(Qt::DropAction action);

// The files of `items`, in order.
std::unique_ptr<QMimeData> uriList(const QList<DraggingItem> &items);
