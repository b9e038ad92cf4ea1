// SPDX-License-Identifier: MIT
#include "shelf/ShelfViews.h"

#include "platform/FloatingPanels.h"

#include <QPainter>

namespace {

// Dark enough that white text is readable over a white wallpaper.
const QColor kBackground(34, 34, 38);
constexpr float kBackgroundAlpha = 0.84F;
constexpr float kRimAlpha = 0.13F; // the fine light line that sets the panel off a dark wallpaper

constexpr double kHeaderSymbolSize = 16;
constexpr float kHoverAlpha = 0.14F;
constexpr float kPressedAlpha = 0.24F;
constexpr double kHoverRadius = 5;

void drawBackground(QPainter &painter, const QRect &rect, bool blends)
{
    QColor background = kBackground;
    if (blends)
        background.setAlphaF(kBackgroundAlpha);
    else
        painter.fillRect(rect, background);
    painter.setPen(Qt::NoPen);
    painter.setBrush(background);
    painter.drawRoundedRect(rect, VisualEffectView::kCornerRadius, VisualEffectView::kCornerRadius);
}

} // namespace

VisualEffectView::VisualEffectView(const FloatingPanels &panels, QWidget *parent)
    : QWidget(parent)
    , floatingPanels(panels)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void VisualEffectView::setBorder(double width, const QColor &color)
{
    layerBorderWidth = width;
    layerBorderColor = color;
    update();
}

void VisualEffectView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool highlighted = layerBorderWidth > 0;
    if (!floatingPanels.drawsBackground())
        drawBackground(painter, rect(), floatingPanels.canBlend());
    else if (!highlighted)
        return;
    const double width = highlighted ? layerBorderWidth : 1;
    const QColor color = highlighted ? layerBorderColor : QColor::fromRgbF(1, 1, 1, kRimAlpha);
    const double inset = width / 2;
    painter.setPen(QPen(color, width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), kCornerRadius - inset,
                            kCornerRadius - inset);
}

ColorView::ColorView(double radius, QWidget *parent)
    : QWidget(parent)
    , cornerRadius(radius)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void ColorView::setColor(const QColor &color)
{
    layerColor = color;
    update();
}

void ColorView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(layerColor);
    painter.drawRoundedRect(rect(), cornerRadius, cornerRadius);
}

HeaderButton::HeaderButton(const QIcon &symbol, const QString &label, QWidget *parent)
    : QAbstractButton(parent)
{
    setIcon(symbol);
    setToolTip(label);
    setAccessibleName(label);
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_Hover);
}

void HeaderButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (underMouse() || isDown()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor::fromRgbF(1, 1, 1, isDown() ? kPressedAlpha : kHoverAlpha));
        painter.drawRoundedRect(rect(), kHoverRadius, kHoverRadius);
    }
    const double x = (width() - kHeaderSymbolSize) / 2;
    const double y = (height() - kHeaderSymbolSize) / 2;
    icon().paint(&painter, QRectF(x, y, kHeaderSymbolSize, kHeaderSymbolSize).toAlignedRect());
}
