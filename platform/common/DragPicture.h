// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DragSessions.h"

#include <QColor>
#include <QImage>
#include <QPixmap>
#include <QPoint>
#include <QPointF>
#include <QSizeF>

// The picture under the pointer during a drag, and the point of it that is at the pointer.
struct DragPicture {
    QPixmap pixmap;
    QPoint hotSpot; // points from the picture's top left
};

struct DragPictureStyle {
    double scale = 1.0; // pixels per point
    QColor accent;      // of the badge with the number of items
    bool blends = true; // whether translucent pixels have an effect; otherwise each pixel is opaque or transparent
};

// The picture of a drag of `items`: the contents of one item, or a fan of the first few with their number. `pointer` is
// where the user grabbed the source view, in its points.
DragPicture dragPicture(const QList<DraggingItem> &items, const QPointF &pointer, const DragPictureStyle &style);

// The contents of `item` as they lie in its frame, with nothing around them; `scale` pixels per point.
QImage framedPicture(const DraggingItem &item, double scale);

// The largest size with the proportions of `contents` that fits `frame`.
QSizeF fittedSize(const QSizeF &contents, const QSizeF &frame);

// `image` with every pixel either opaque or fully transparent.
QImage hardEdged(const QImage &image);
