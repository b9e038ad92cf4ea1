// SPDX-License-Identifier: MIT
#include "platform/linux/looks/OutlinedIconEngine.h"

#include <QPainter>
#include <QPixmap>

namespace {

constexpr double kOutlineOpacity = 0.75;
constexpr double kPixelsOfOutline = 22.0;                  // the outline has one pixel for so many pixels of the icon
constexpr int kTraySizes[] = {16, 22, 24, 32, 44, 48, 64}; // pixels

} // namespace

OutlinedIconEngine::OutlinedIconEngine(QIcon symbol, QIcon outline, QString name)
    : symbol(std::move(symbol))
    , outline(std::move(outline))
    , name(std::move(name))
{
}

void OutlinedIconEngine::paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state)
{
    const QRectF device = painter->deviceTransform().mapRect(QRectF(rect));
    painter->drawPixmap(rect, pixmap(device.size().toSize(), mode, state));
}

QPixmap OutlinedIconEngine::pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state)
{
    const int width = qMax(1, qRound(qMin(size.width(), size.height()) / kPixelsOfOutline));
    const QSize inner = size - QSize(2 * width, 2 * width);
    if (inner.isEmpty())
        return {};
    QPixmap dark(size);
    dark.fill(Qt::transparent);
    QPainter darkPainter(&dark);
    const QPixmap shape = outline.pixmap(inner, 1.0, mode, state);
    for (int x = 0; x <= 2 * width; ++x) {
        for (int y = 0; y <= 2 * width; ++y)
            darkPainter.drawPixmap(x, y, shape);
    }
    darkPainter.end();

    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setOpacity(kOutlineOpacity);
    painter.drawPixmap(0, 0, dark);
    painter.setOpacity(1.0);
    painter.drawPixmap(width, width, symbol.pixmap(inner, 1.0, mode, state));
    return pixmap;
}

QList<QSize> OutlinedIconEngine::availableSizes(QIcon::Mode, QIcon::State)
{
    QList<QSize> sizes;
    for (const int size : kTraySizes)
        sizes.append(QSize(size, size));
    return sizes;
}

QIconEngine *OutlinedIconEngine::clone() const
{
    return new OutlinedIconEngine(*this);
}

QString OutlinedIconEngine::key() const
{
    return QStringLiteral("outlined");
}

QString OutlinedIconEngine::iconName()
{
    return name;
}
