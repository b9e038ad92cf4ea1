// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QPixmap>
#include <QPointer>
#include <QRectF>
#include <QUrl>

#include <functional>

class QWidget;

enum class DragOperation { None, Copy, Move, Link };

// One file of a drag.
struct DraggingItem {
    QUrl fileURL;
    QRectF frame;     // points, in the source view
    QPixmap contents; // what is drawn for it under the pointer
};

// Drags out of this application.
class DragSessions {
public:
    // Called exactly once, with the operation of the destination: None when the drag was cancelled or refused, or the
    // destination died.
    using Ended = std::function<void(DragOperation operation)>;

    virtual ~DragSessions() = default;

    // Begins one drag of all `items`, in order, that offers only `offered`. It lasts until the button is released or
    // Escape is pressed. `ended` is called when the destination has answered, possibly after this returns; never if the
    // drag could not begin. `source` may be deleted meanwhile.
    virtual void begin(QWidget &source, const QList<DraggingItem> &items, DragOperation offered, Ended ended) = 0;
};
