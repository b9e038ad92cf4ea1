// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>
#include <QRectF>

// Converts a point between the origin at the bottom left and the one at the top left, for an area of this height in
// points.
inline QPointF flippedIn(double height, const QPointF &point)
{
    return {point.x(), height - point.y()};
}

inline QRectF flippedIn(double height, const QRectF &rect)
{
    return {rect.x(), height - rect.y() - rect.height(), rect.width(), rect.height()};
}
