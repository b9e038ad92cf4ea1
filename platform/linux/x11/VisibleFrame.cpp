// SPDX-License-Identifier: MIT
#include "platform/linux/x11/VisibleFrame.h"

#include <algorithm>

namespace {

constexpr std::size_t kEdges = 4;
constexpr std::size_t kPartialValues = 12;
// Limits nonsense values, so that the arithmetic cannot overflow.
constexpr quint32 kFarthest = 1u << 24;

int pixels(quint32 value)
{
    return static_cast<int>(std::min(value, kFarthest));
}

bool overlaps(const Strut::Edge &edge, int first, int last)
{
    return edge.start <= last && edge.end >= first;
}

} // namespace

Strut strutOf(const std::vector<quint32> &partial, const std::vector<quint32> &whole)
{
    const bool isPartial = partial.size() >= kPartialValues;
    const std::vector<quint32> &values = isPartial ? partial : whole;
    if (values.size() < kEdges)
        return {};
    const auto edge = [&](std::size_t index) {
        Strut::Edge result{pixels(values[index]), 0, pixels(kFarthest)};
        if (isPartial) {
            const int start = pixels(values[kEdges + 2 * index]);
            const int end = pixels(values[kEdges + 2 * index + 1]);
            // Some docks set no range, and mean the whole edge.
            if (end > 0) {
                result.start = start;
                result.end = end;
            }
        }
        return result;
    };
    return {edge(0), edge(1), edge(2), edge(3)};
}

QRect visiblePixels(const QRect &screen, const QSize &root, const QList<Strut> &struts, const QList<QRect> &workAreas)
{
    int left = screen.left();
    int right = screen.right() + 1;
    int top = screen.top();
    int bottom = screen.bottom() + 1;
    const auto meetsRows = [&](const Strut::Edge &edge) {
        return edge.depth > 0 && overlaps(edge, screen.top(), screen.bottom());
    };
    const auto meetsColumns = [&](const Strut::Edge &edge) {
        return edge.depth > 0 && overlaps(edge, screen.left(), screen.right());
    };
    for (const Strut &strut : struts) {
        const int innerLeft = strut.left.depth;
        const int innerRight = root.width() - strut.right.depth;
        const int innerTop = strut.top.depth;
        const int innerBottom = root.height() - strut.bottom.depth;
        if (innerLeft > screen.left() && innerLeft <= screen.right() && meetsRows(strut.left))
            left = std::max(left, innerLeft);
        if (innerRight > screen.left() && innerRight <= screen.right() && meetsRows(strut.right))
            right = std::min(right, innerRight);
        if (innerTop > screen.top() && innerTop <= screen.bottom() && meetsColumns(strut.top))
            top = std::max(top, innerTop);
        if (innerBottom > screen.top() && innerBottom <= screen.bottom() && meetsColumns(strut.bottom))
            bottom = std::min(bottom, innerBottom);
    }
    QRect visible(left, top, right - left, bottom - top);
    for (const QRect &area : workAreas) {
        if (screen.contains(area))
            visible &= area;
    }
    return visible.isEmpty() ? screen : visible;
}

std::optional<qsizetype> screenShowing(const QRect &window, const QList<QRect> &screens)
{
    std::optional<qsizetype> best;
    qint64 most = 0;
    int covered = 0;
    for (qsizetype i = 0; i < screens.size(); ++i) {
        const QRect shown = window & screens.at(i);
        covered += shown == screens.at(i);
        const qint64 area = shown.isEmpty() ? 0 : qint64{shown.width()} * shown.height();
        if (area > most) {
            most = area;
            best = i;
        }
    }
    return covered > 1 ? std::nullopt : best;
}
