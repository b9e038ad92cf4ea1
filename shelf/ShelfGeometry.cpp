// SPDX-License-Identifier: MIT
#include "shelf/ShelfGeometry.h"

#include "shelf/ShelfMetrics.h"

#include <algorithm>
#include <cmath>

using namespace ShelfMetrics;

namespace {

double alongX(const QRectF &visible, WindowAlignment alignment, double width)
{
    switch (alignment) {
    case WindowAlignment::Start:
        return visible.left() + kCornerGap;
    case WindowAlignment::End:
        return visible.right() - width - kCornerGap;
    default:
        return visible.center().x() - width / 2;
    }
}

// The start of a side edge is its top. In these coordinates a rectangle's bottom() is its greatest y.
double alongY(const QRectF &visible, WindowAlignment alignment, double height)
{
    switch (alignment) {
    case WindowAlignment::Start:
        return visible.bottom() - height - kCornerGap;
    case WindowAlignment::End:
        return visible.top() + kCornerGap;
    default:
        return visible.center().y() - height / 2;
    }
}

} // namespace

QRectF flipped(const QRectF &frame, double height)
{
    return QRectF(frame.x(), height - frame.y() - frame.height(), frame.width(), frame.height());
}

QPointF flipped(const QPointF &point, double height)
{
    return QPointF(point.x(), height - point.y());
}

QRect wholePoints(const QRectF &frame)
{
    // Limit what an absurd setting asks for to what a window system can express.
    static constexpr double kFarthest = 32000;
    const auto whole = [](double value, double least) {
        return std::isnan(value) ? 0 : qRound(std::clamp(value, least, kFarthest));
    };
    return QRect(whole(frame.x(), -kFarthest), whole(frame.y(), -kFarthest), whole(frame.width(), 0),
                 whole(frame.height(), 0));
}

bool isHorizontal(WindowEdge edge)
{
    return edge == WindowEdge::Top || edge == WindowEdge::Bottom;
}

double labelReserve(FileNameDisplay names)
{
    return names == FileNameDisplay::Hidden ? kReserveWithoutName : kReserveWithName;
}

QSizeF tileSize(double itemSize, FileNameDisplay names)
{
    return QSizeF(itemSize + kTileMargin, itemSize + labelReserve(names));
}

QRectF shelfFrame(const QRectF &visible, WindowEdge edge, WindowAlignment alignment, double itemSize, double reserve,
                  qsizetype itemCount, double scrollerWidth)
{
    const auto slotCount = static_cast<double>(std::clamp(itemCount, kFewestSlots, kMostSlots));
    const bool horizontal = isHorizontal(edge);
    double width =
        horizontal ? (itemSize + kRowTileWidth) * slotCount + 2 * kStackInset + kRowHeader : itemSize + kColumnWidth;
    double height = horizontal ? itemSize + reserve + kRowHeight + scrollerWidth
                               : (itemSize + reserve + kTileSpacing) * slotCount + 2 * kStackInset + kColumnHeader;

    QPointF origin;
    switch (edge) {
    case WindowEdge::Left:
        origin = QPointF(visible.left() + kPanelGap, alongY(visible, alignment, height));
        break;
    case WindowEdge::Top:
        origin = QPointF(alongX(visible, alignment, width), visible.bottom() - height - kPanelGap);
        break;
    case WindowEdge::Bottom:
        origin = QPointF(alongX(visible, alignment, width), visible.top() + kPanelGap);
        break;
    default:
        origin = QPointF(visible.right() - width - kPanelGap, alongY(visible, alignment, height));
        break;
    }

    if (horizontal)
        width = std::min(width, visible.width() - kScreenMargin);
    else
        height = std::min(height, visible.height() - kScreenMargin);
    return QRectF(origin, QSizeF(width, height));
}

ShelfLayout shelfLayout(const QSizeF &size, Qt::Orientation orientation)
{
    ShelfLayout layout;
    const QSizeF button(kButtonSize, kButtonSize);
    if (orientation == Qt::Horizontal) {
        layout.headerBar = QRectF(0, 0, kHeaderWidth, size.height());
        const double x = (kHeaderWidth - kButtonSize) / 2;
        layout.trashBtn = QRectF(QPointF(x, kButtonEnd), button);
        layout.selectAllBtn = QRectF(QPointF(x, layout.trashBtn.bottom() + kButtonMargin), button);
        layout.gearBtn = QRectF(QPointF(x, size.height() - kButtonEnd - kButtonSize), button);
        layout.sepLine = QRectF(kHeaderWidth, kSeparatorInset, kSeparatorThickness,
                                std::max(0.0, size.height() - 2 * kSeparatorInset));
        const double left = layout.sepLine.right() + kSeparatorGap;
        layout.scrollView = QRectF(left, kScrollMargin, std::max(0.0, size.width() - left),
                                   std::max(0.0, size.height() - 2 * kScrollMargin));
    } else {
        layout.headerBar = QRectF(0, kHeaderTop, size.width(), kHeaderHeight);
        const double y = (kHeaderHeight - kButtonSize) / 2;
        layout.gearBtn = QRectF(QPointF(kButtonMargin, y), button);
        layout.selectAllBtn = QRectF(QPointF((size.width() - kButtonSize) / 2, y), button);
        layout.trashBtn = QRectF(QPointF(size.width() - kButtonMargin - kButtonSize, y), button);
        layout.sepLine = QRectF(kSeparatorInset, layout.headerBar.bottom() + kSeparatorGap,
                                std::max(0.0, size.width() - 2 * kSeparatorInset), kSeparatorThickness);
        const double top = layout.sepLine.bottom() + kSeparatorGap;
        layout.scrollView = QRectF(0, top, size.width(), std::max(0.0, size.height() - top - kScrollMargin));
    }
    return layout;
}

TileLayout tileLayout(const QSizeF &size, FileNameDisplay names)
{
    const bool named = names != FileNameDisplay::Hidden;
    const double bottom = named ? kImageBottomWithName : kImageBottomWithoutName;
    return TileLayout{
        QRectF(kImageInset, bottom, size.width() - 2 * kImageInset, std::max(0.0, size.height() - bottom - kImageTop)),
        QRectF(kNameInset, -kNameOverhang, size.width() - 2 * kNameInset, named ? kNameHeight : 0.0),
        QRectF(size.width() - kRemoveOffset, size.height() - kRemoveOffset, kRemoveSize, kRemoveSize)};
}

QRectF cursorShelfFrame(const QPointF &pointer, const QRectF &visible)
{
    double x = pointer.x() + kPointerGapX;
    double y = pointer.y() - kCursorShelfSize - kPointerGapY;
    x = std::min(std::max(x, visible.left() + kPanelGap), visible.right() - kCursorShelfSize - kPanelGap);
    y = std::min(std::max(y, visible.top() + kPanelGap), visible.bottom() - kCursorShelfSize - kPanelGap);
    return QRectF(x, y, kCursorShelfSize, kCursorShelfSize);
}
