// SPDX-License-Identifier: MIT
#include "preferences/AppExclusionCell.h"

#include "preferences/Controls.h"

#include <QApplication>
#include <QPainter>

namespace {

// Points.
constexpr int kRowHeight = 26;
constexpr int kIconSize = 18;
constexpr int kEdge = 4; // between the row's ends and what is in it
constexpr int kGap = 6;  // between icon and name
constexpr int kLine = 1;

} // namespace

QSize AppExclusionCell::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const
{
    return {kEdge + kIconSize + kGap + kEdge, kRowHeight};
}

void AppExclusionCell::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    const QStyle *style = item.widget ? item.widget->style() : QApplication::style();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &item, painter, item.widget);

    const QRect row = item.rect;
    const QRect iconFrame(row.x() + kEdge, row.y() + (row.height() - kIconSize) / 2, kIconSize, kIconSize);
    const QRect nameFrame(QPoint(iconFrame.right() + 1 + kGap, row.top()), QPoint(row.right() - kEdge, row.bottom()));
    drawImage(*painter, item.icon, QStyle::visualRect(item.direction, row, iconFrame));
    drawTitle(*painter, item, QStyle::visualRect(item.direction, row, nameFrame), QPalette::Text);

    const QRect line(row.x(), row.bottom() + 1 - kLine, row.width(), kLine);
    painter->fillRect(line, separatorColor(item.palette, QPalette::Text));
    drawFocusMark(*painter, item);
}
