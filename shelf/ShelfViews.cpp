// SPDX-License-Identifier: MIT
#include "shelf/ShelfViews.h"

#include "platform/FloatingPanels.h"
#include "shelf/ShelfMetrics.h"

#include <QPainter>

#include <cmath>

using namespace ShelfMetrics;

namespace {

// Clips to the upper and lower corners of a rounded rectangle, calls `draw` for each, and returns the plain part
// between them. At a fractional scale it calls `draw` once for all, and returns nothing. The pixels are the same; a
// tall panel draws in a fraction of the time.
template<typename Draw>
QRect drawCorners(QPainter &painter, const QRect &rect, double radius, const Draw &draw)
{
    const int corner = static_cast<int>(std::ceil(radius));
    const QRect middle = rect.adjusted(0, corner, 0, -corner);
    const double scale = painter.device()->devicePixelRatioF();
    if (scale != std::floor(scale) || middle.height() <= 0) {
        draw();
        return {};
    }
    for (const QRect &part : {QRect(rect.topLeft(), QSize(rect.width(), corner)),
                              QRect(middle.bottomLeft() + QPoint(0, 1), QSize(rect.width(), corner))}) {
        painter.save();
        painter.setClipRect(part, Qt::IntersectClip);
        draw();
        painter.restore();
    }
    return middle;
}

void fillRoundedRect(QPainter &painter, const QRect &rect, double radius, const QColor &color)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.fillRect(drawCorners(painter, rect, radius, [&] { painter.drawRoundedRect(rect, radius, radius); }), color);
}

// Draws a line of whole points along the inside of the edge.
void strokeRoundedRect(QPainter &painter, const QRect &rect, double radius, double width, const QColor &color)
{
    const double inset = width / 2;
    painter.setPen(QPen(color, width));
    painter.setBrush(Qt::NoBrush);
    const QRect middle = drawCorners(painter, rect, radius, [&] {
        painter.drawRoundedRect(QRectF(rect).adjusted(inset, inset, -inset, -inset), radius - inset, radius - inset);
    });
    painter.fillRect(QRectF(middle.x(), middle.y(), width, middle.height()), color);
    painter.fillRect(QRectF(middle.x() + middle.width() - width, middle.y(), width, middle.height()), color);
}

void drawBackground(QPainter &painter, const QRect &rect, bool blends)
{
    QColor background = kBackground;
    if (blends)
        background.setAlphaF(kBackgroundAlpha);
    else
        painter.fillRect(rect, background);
    fillRoundedRect(painter, rect, kPanelCornerRadius, background);
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
    const QColor color = highlighted ? layerBorderColor : white(kRimAlpha);
    strokeRoundedRect(painter, rect(), kPanelCornerRadius, width, color);
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
    fillRoundedRect(painter, rect(), cornerRadius, layerColor);
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
        painter.setBrush(white(isDown() ? kButtonPressedAlpha : kButtonHoverAlpha));
        painter.drawRoundedRect(rect(), kButtonRadius, kButtonRadius);
    }
    const double x = (width() - kHeaderSymbolSize) / 2;
    const double y = (height() - kHeaderSymbolSize) / 2;
    icon().paint(&painter, QRectF(x, y, kHeaderSymbolSize, kHeaderSymbolSize).toAlignedRect());
}
