// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QRect>
#include <QSize>

#include <optional>
#include <vector>

// The space that one window reserves along the edges of the root window, in pixels: its depth at each edge, and the
// first and last pixel of that part of the edge.
struct Strut {
    struct Edge {
        int depth = 0;
        int start = 0;
        int end = 0;
        bool operator==(const Edge &) const = default;
    };
    Edge left;
    Edge right;
    Edge top;
    Edge bottom;

    bool isEmpty() const { return left.depth <= 0 && right.depth <= 0 && top.depth <= 0 && bottom.depth <= 0; }
    bool operator==(const Strut &) const = default;
};

// A strut from the twelve values of _NET_WM_STRUT_PARTIAL, or the four of _NET_WM_STRUT, which are for whole edges.
// Empty for any other number of values.
Strut strutOf(const std::vector<quint32> &partial, const std::vector<quint32> &whole);

// The part of `screen` without struts, in pixels. A strut belongs to the screen of its inner edge only, even where it
// reaches across screens behind that one. `workAreas` are the areas that the desktop itself states for its screens. The
// whole screen when nothing would be left.
QRect visiblePixels(const QRect &screen, const QSize &root, const QList<Strut> &struts,
                    const QList<QRect> &workAreas = {});

// The screen that shows most of `window`. Nothing when it is on none, or covers several screens completely, as the
// desktop's own window does.
std::optional<qsizetype> screenShowing(const QRect &window, const QList<QRect> &screens);
