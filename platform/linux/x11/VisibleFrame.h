// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QRect>
#include <QSize>

#include <optional>
#include <vector>

// What one window reserves along the edges of the root window, in pixels: its depth at each edge, and the first and
// last pixel of the edge that it takes up.
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

// A strut from the values of _NET_WM_STRUT_PARTIAL (twelve), else of _NET_WM_STRUT (four, along whole edges); an empty
// one from anything else.
Strut strutOf(const std::vector<quint32> &partial, const std::vector<quint32> &whole);

// The part of `screen` that no strut takes, in pixels. A strut counts for the screen in which its inner edge lies: one
// along an inner edge of a screen reaches across the screens beyond it, and takes nothing from those. `workAreas` are
// what a desktop itself leaves of each of its screens. When nothing would be left the whole screen counts.
QRect visiblePixels(const QRect &screen, const QSize &root, const QList<Strut> &struts,
                    const QList<QRect> &workAreas = {});

// The screen that shows most of `window`; nothing when it is on none, or covers several of them wholly, as the
// desktop does.
std::optional<qsizetype> screenShowing(const QRect &window, const QList<QRect> &screens);
