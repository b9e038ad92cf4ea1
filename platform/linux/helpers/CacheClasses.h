// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>

#include <algorithm>
#include <array>
#include <cmath>

// The size classes of the desktop's thumbnail cache. The entries of a class are in one folder and fit a square of
// `pixels`.
struct CacheClass {
    const char *name;
    int pixels;
};

constexpr std::array<CacheClass, 4> kCacheClasses = {
    {{"normal", 128}, {"large", 256}, {"x-large", 512}, {"xx-large", 1024}}};

// The number of pixels of `points` points at `scale`, rounded up, at least 1 and at most `longest`. Tiny rounding
// errors are ignored, because 41 x 1.1 is not exactly 45.1.
inline int pixelSide(double points, double scale, int longest)
{
    constexpr double kHair = 1e-6;
    const double pixels = points * scale;
    return pixels > 0 ? static_cast<int>(std::clamp(std::floor(pixels + kHair), 1.0, double(longest))) : 0;
}
