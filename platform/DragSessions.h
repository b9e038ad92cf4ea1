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
    // Called exactly once, with what the destination did: None when the drag was cancelled or refused, or its
    // destination died.
    using Ended = std::function<void(DragOperation operation)>;

    virtual ~DragSessions() = default;

    // Begins one drag that carries all `items`, in order, and offers only `offered`. It follows the pointer until the
    // button is released or Escape is pressed. `ended` comes after the destination has answered, which can be after
    // this returns; never when the drag could not begin at all. `source` may be deleted meanwhile.
    virtual void begin(QWidget &source, const QList<DraggingItem> &items, DragOperation offered, Ended ended) = 0;
};
