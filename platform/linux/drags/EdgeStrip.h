// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QPointF>
#include <QRect>
#include <QWidget>

#include <functional>
#include <optional>

// An invisible window that notices a drag over it and takes nothing. It exists only while it is needed, as it takes
// clicks and drops from what is below it.
class EdgeStrip : public QWidget {
public:
    explicit EdgeStrip(const QRect &place);

    // Where the pointer of the drag is, in the points of Qt; nothing when it leaves.
    std::function<void(std::optional<QPointF> position)> onPointer;

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
};

// Where a drag shows that it comes near to `frame`: along the edge of `visible` that is next to it, or along two edges
// when both are, 120 points beyond the frame to both sides.
QList<QRect> edgeStrips(const QRectF &frame, const QRectF &visible);
