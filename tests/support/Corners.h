// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

// The area in pixels outside the border at the top left corner of `image`, within `extent` of the corner. A border that
// follows a corner of that radius leaves a square minus a quarter of a circle.
inline double areaOutsideCorner(const QImage &image, int extent)
{
    double area = 0;
    for (int y = 0; y < extent; ++y) {
        double before = 0;
        for (int x = 0; x < extent; ++x) {
            const double alpha = image.pixelColor(x, y).alphaF();
            if (alpha < before)
                break;
            area += 1 - alpha;
            before = alpha;
        }
    }
    return area;
}
