// SPDX-License-Identifier: MIT
#include "shelf/ShelfScroller.h"

#include "shelf/ShelfMetrics.h"

#include <QPainter>
#include <QProxyStyle>
#include <QStyle>
#include <QStyleOptionSlider>

using namespace ShelfMetrics;

namespace {

class LegacyStyle : public QProxyStyle {
public:
    explicit LegacyStyle(int scrollerExtent)
        : extent(scrollerExtent)
    {
    }

    int pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const override
    {
        if (metric == PM_ScrollBarExtent)
            return extent;
        if (metric == PM_ScrollView_ScrollBarOverlap)
            return 0;
        return QProxyStyle::pixelMetric(metric, option, widget);
    }

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *answer) const override
    {
        return hint == SH_ScrollBar_Transient ? 0 : QProxyStyle::styleHint(hint, option, widget, answer);
    }

private:
    const int extent;
};

} // namespace

ShelfScroller::ShelfScroller(Qt::Orientation orientation, QWidget *parent)
    : QScrollBar(orientation, parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent, false);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::NoFocus);
}

void ShelfScroller::takeRoom(int extent)
{
    if (style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this) == extent &&
        !style()->styleHint(QStyle::SH_ScrollBar_Transient, nullptr, this))
        return;
    auto *const legacy = new LegacyStyle(extent);
    legacy->setParent(this);
    setStyle(legacy);
}

void ShelfScroller::paintEvent(QPaintEvent *)
{
    QStyleOptionSlider option;
    initStyleOption(&option);
    QRectF thumb = style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
    if (orientation() == Qt::Vertical)
        thumb = QRectF((width() - kScrollerThickness) / 2, thumb.y(), kScrollerThickness, thumb.height());
    else
        thumb = QRectF(thumb.x(), (height() - kScrollerThickness) / 2, thumb.width(), kScrollerThickness);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(white(underMouse() || isSliderDown() ? kScrollerActiveAlpha : kScrollerRestingAlpha));
    painter.drawRoundedRect(thumb, kScrollerThickness / 2, kScrollerThickness / 2);
}
