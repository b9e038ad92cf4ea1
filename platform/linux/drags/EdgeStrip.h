// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QPointF>
#include <QRect>
#include <QWidget>

#include <functional>
#include <optional>

// An invisible window that notices a drag over it and accepts no drop. It takes clicks and drops from the windows below
// it, so it exists only while it is needed.
class EdgeStrip : public QWidget {
public:
    explicit EdgeStrip(const QRect &place);

    // Reports where the pointer of the drag is, in points of Qt (origin at the top left), and nothing when the drag
    // leaves.
    std::function<void(std::optional<QPointF> position)> onPointer;

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
};

// The strips in which a drag counts as near to `frame`: they lie along the edge of `visible` that is next to `frame`,
// or along two edges when both are equally near, and extend 120 points beyond `frame` to both sides. In points of Qt.
QList<QRect> edgeStrips(const QRectF &frame, const QRectF &visible);
