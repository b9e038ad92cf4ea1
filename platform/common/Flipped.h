// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>
#include <QRectF>

// A place that is measured from the bottom left of something, as Qt measures it from its top left, and back.
inline QPointF flippedIn(double height, const QPointF &point)
{
    return {point.x(), height - point.y()};
}

inline QRectF flippedIn(double height, const QRectF &rect)
{
    return {rect.x(), height - rect.y() - rect.height(), rect.width(), rect.height()};
}
