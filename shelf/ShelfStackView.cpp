// SPDX-License-Identifier: MIT
#include "shelf/ShelfStackView.h"

#include "shelf/ShelfGeometry.h"
#include "shelf/ShelfItemView.h"
#include "shelf/ShelfMetrics.h"
#include "shelf/TileViews.h"

using namespace ShelfMetrics;

ShelfStackView::ShelfStackView(QWidget *parent)
    : QWidget(parent)
{
}

void ShelfStackView::addArrangedSubview(ShelfItemView *tile, const QSizeF &size)
{
    tiles.append(tile);
    sizes.insert(tile, size);
    if (tile->parentWidget() != this)
        tile->setParent(this);
    arrange();
    tile->show();
}

void ShelfStackView::removeArrangedSubview(ShelfItemView *tile)
{
    if (!tiles.removeOne(tile))
        return;
    sizes.remove(tile);
    tile->hide();
    // The label is no child of the tile, because it extends below it.
    if (tile->nameLabel)
        tile->nameLabel->hide();
    tile->deleteLater();
    arrange();
}

void ShelfStackView::setTileHeight(double height)
{
    for (QSizeF &size : sizes)
        size.setHeight(height);
    arrange();
}

void ShelfStackView::setHorizontal(bool value)
{
    horizontal = value;
    arrange();
}

void ShelfStackView::setOffScreen(double atStart, double atEnd)
{
    if (atStart == offScreenAtStart && atEnd == offScreenAtEnd)
        return;
    offScreenAtStart = atStart;
    offScreenAtEnd = atEnd;
    arrange();
}

void ShelfStackView::resizeEvent(QResizeEvent *)
{
    arrange();
}

void ShelfStackView::arrange()
{
    double along = offScreenAtStart + kStackInset;
    for (ShelfItemView *tile : tiles) {
        const QSizeF size = sizes.value(tile);
        const QRectF frame = horizontal ? QRectF(QPointF(along, (height() - size.height()) / 2), size)
                                        : QRectF(QPointF((width() - size.width()) / 2, along), size);
        tile->setGeometry(wholePoints(frame));
        along += (horizontal ? size.width() : size.height()) + kTileSpacing;
    }
    const double end = tiles.isEmpty() ? 2 * kStackInset : along - kTileSpacing + kStackInset;
    const int length = wholePoints(QRectF(0, 0, end + offScreenAtEnd, 0)).width();
    // The scroll view stretches the stack across its direction; along it, the stack is as long as its tiles.
    setMinimumSize(horizontal ? length : 0, horizontal ? 0 : length);
}
