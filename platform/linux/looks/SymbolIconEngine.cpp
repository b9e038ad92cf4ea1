// SPDX-License-Identifier: MIT
#include "platform/linux/looks/SymbolIconEngine.h"

#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

namespace {

constexpr double kDisabledOpacity = 0.4;

QByteArray tinted(QByteArray svg, const QColor &tint)
{
    if (tint.isValid())
        svg.replace("currentColor", tint.name(QColor::HexRgb).toLatin1());
    return svg;
}

} // namespace

SymbolIconEngine::SymbolIconEngine(const QByteArray &svg, const QColor &tint)
    : renderer(std::make_shared<QSvgRenderer>(tinted(svg, tint)))
    , opacity(tint.isValid() ? tint.alphaF() : 1.0)
{
    renderer->setAspectRatioMode(Qt::KeepAspectRatio);
}

SymbolIconEngine::~SymbolIconEngine() = default;

void SymbolIconEngine::paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state)
{
    const QRectF device = painter->deviceTransform().mapRect(QRectF(rect));
    painter->drawPixmap(rect, pixmap(device.size().toSize(), mode, state));
}

QPixmap SymbolIconEngine::pixmap(const QSize &size, QIcon::Mode mode, QIcon::State)
{
    if (size.isEmpty())
        return {};
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer->render(&painter, QRectF(QPointF(), size));
    // Apply the alpha to the finished picture: otherwise it would add up where strokes overlap.
    const double strength = mode == QIcon::Disabled ? opacity * kDisabledOpacity : opacity;
    if (strength < 1.0) {
        painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        painter.fillRect(pixmap.rect(), QColor::fromRgbF(0, 0, 0, static_cast<float>(strength)));
    }
    painter.end();
    return pixmap;
}

QIconEngine *SymbolIconEngine::clone() const
{
    return new SymbolIconEngine(*this);
}

QString SymbolIconEngine::key() const
{
    return QStringLiteral("symbol");
}

bool SymbolIconEngine::isNull()
{
    return !renderer->isValid();
}
