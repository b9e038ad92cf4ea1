// SPDX-License-Identifier: MIT
#include "platform/ThumbnailGenerator.h"

#include <cmath>

QSizeF fittedThumbnailSize(double edge, const std::optional<QSizeF> &pixelSize)
{
    if (!pixelSize || pixelSize->width() <= 0 || pixelSize->height() <= 0)
        return QSizeF(edge, edge);
    const double width = pixelSize->width();
    const double height = pixelSize->height();
    if (height > width)
        return QSizeF(std::round(width * edge / height), edge);
    return QSizeF(edge, std::round(height * edge / width));
}
