// SPDX-License-Identifier: MIT
#include "preferences/SidebarCell.h"

#include "preferences/Controls.h"

#include <QApplication>
#include <QPainter>

namespace {

// Points, with the origin at a row's bottom left.
constexpr int kRowHeight = 38;
constexpr QRect kSymbolFrame(10, 9, 18, 18);
constexpr QRect kTitleFrame(34, 10, 120, 17);

// `frame` in the row, with the origin at the top left; mirrored in a right-to-left layout.
QRect frameIn(const QStyleOptionViewItem &row, const QRect &frame)
{
    const QPoint corner(row.rect.x() + frame.x(), row.rect.y() + kRowHeight - frame.y() - frame.height());
    return QStyle::visualRect(row.direction, row.rect, QRect(corner, frame.size()));
}

} // namespace

QSize SidebarCell::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const
{
    return {kTitleFrame.x() + kTitleFrame.width(), kRowHeight};
}

void SidebarCell::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    const QStyle *style = item.widget ? item.widget->style() : QApplication::style();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &item, painter, item.widget);

    const bool selected = item.state & QStyle::State_Selected;
    const auto symbol = index.data(selected ? kSelectedSymbolRole : Qt::DecorationRole).value<QIcon>();
    drawImage(*painter, symbol, frameIn(item, kSymbolFrame));
    drawTitle(*painter, item, frameIn(item, kTitleFrame), QPalette::WindowText);
    drawFocusMark(*painter, item);
}
