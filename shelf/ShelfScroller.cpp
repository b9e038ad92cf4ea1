// SPDX-License-Identifier: MIT
#include "shelf/ShelfScroller.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionSlider>

namespace {

constexpr double kThickness = 5;
constexpr float kRestingAlpha = 0.28F;
constexpr float kActiveAlpha = 0.5F;

} // namespace

ShelfScroller::ShelfScroller(Qt::Orientation orientation, QWidget *parent)
    : QScrollBar(orientation, parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent, false);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::NoFocus);
}

void ShelfScroller::paintEvent(QPaintEvent *)
{
    QStyleOptionSlider option;
    initStyleOption(&option);
    QRectF thumb = style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
    if (orientation() == Qt::Vertical)
        thumb = QRectF((width() - kThickness) / 2, thumb.y(), kThickness, thumb.height());
    else
        thumb = QRectF(thumb.x(), (height() - kThickness) / 2, thumb.width(), kThickness);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgbF(1, 1, 1, underMouse() || isSliderDown() ? kActiveAlpha : kRestingAlpha));
    painter.drawRoundedRect(thumb, kThickness / 2, kThickness / 2);
}
