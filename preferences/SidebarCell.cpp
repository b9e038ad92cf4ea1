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

// `frame` within a row at `row`, whose origin is at the top left.
QRect flipped(const QRect &frame, const QRect &row)
{
    return {row.x() + frame.x(), row.y() + kRowHeight - frame.y() - frame.height(), frame.width(), frame.height()};
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
    drawImage(*painter, symbol, flipped(kSymbolFrame, item.rect));

    painter->setFont(item.font);
    const QRect titleFrame = flipped(kTitleFrame, item.rect);
    style->drawItemText(painter, titleFrame, Qt::AlignLeft | Qt::AlignVCenter, item.palette, true,
                        item.fontMetrics.elidedText(item.text, Qt::ElideRight, titleFrame.width()),
                        selected ? QPalette::HighlightedText : QPalette::WindowText);

    drawFocusMark(*painter, item);
}
