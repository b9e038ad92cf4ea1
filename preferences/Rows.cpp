// SPDX-License-Identifier: MIT
#include "preferences/Rows.h"

#include <QStyle>
#include <QWidget>

#include <algorithm>

Rows::Rows(QWidget &paneToFill, int margin)
    : pane(paneToFill)
    , left(margin)
    , right(pane.width() - margin)
    , bottom(pane.height() - margin)
    , row(left, margin, 0, 0)
{
}

QSize Rows::wish(const QWidget &view)
{
    return view.sizeHint().expandedTo(view.minimumSize()).boundedTo(view.maximumSize());
}

void Rows::begin(QWidget &view, int gap, int widest)
{
    const QSize size = wish(view);
    row = QRect(left, row.y() + row.height() + gap, std::min(size.width(), widest), size.height());
    place(view, row);
}

void Rows::begin(QWidget &view, int gap)
{
    begin(view, gap, wish(view).width());
}

void Rows::fill(QWidget &view, int gap)
{
    row = QRect(left, row.y() + row.height() + gap, width(), wish(view).height());
    place(view, row);
}

void Rows::fillRest(QWidget &view, int gap)
{
    const int y = row.y() + row.height() + gap;
    row = QRect(left, y, width(), std::max(0, bottom - y));
    place(view, row);
}

void Rows::next(QWidget &view, int gap)
{
    placeCentered(view, x + gap, wish(view));
}

void Rows::nextWrapped(QWidget &view, int gap, int tallest)
{
    const int rest = std::max(0, right - x - gap);
    placeCentered(view, x + gap, QSize(rest, std::min(view.heightForWidth(rest), tallest)));
}

void Rows::end(QWidget &view)
{
    const QSize size = wish(view);
    placeCentered(view, right - size.width(), size);
}

void Rows::placeCentered(QWidget &view, int start, const QSize &size)
{
    place(view, QRect(QPoint(start, row.y() + (row.height() - size.height()) / 2), size));
}

void Rows::place(QWidget &view, const QRect &frame)
{
    x = frame.x() + frame.width();
    view.setGeometry(QStyle::visualRect(pane.layoutDirection(), pane.rect(), frame));
}
