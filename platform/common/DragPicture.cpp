// SPDX-License-Identifier: MIT
#include "platform/common/DragPicture.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

// Degrees by which the pictures of a fan are turned, the front one first.
constexpr std::array kFanAngles = {0.0, -7.0, 6.0, -13.0};
// The room around a fan's front picture, as a share of its frame, that the turned ones behind it need.
constexpr double kFanMargin = 0.16;
constexpr double kBadgeHeight = 22;
constexpr double kBadgePadding = 6;
constexpr double kBadgeRing = 1.5;
constexpr int kBadgeFontSize = 12;
constexpr int kOpaqueFromAlpha = 128;
constexpr int kLightFromGray = 170;
// Some windowing systems fail with smaller drag pictures.
constexpr int kSmallestSide = 2;

QImage canvas(const QSizeF &size, double scale)
{
    QImage image(std::max(kSmallestSide, int(std::ceil(size.width() * scale))),
                 std::max(kSmallestSide, int(std::ceil(size.height() * scale))), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    return image;
}

// The frame of the contents in the frame of `item`: centred, in points.
QRectF pictureRect(const DraggingItem &item)
{
    QRectF rect(QPointF(), fittedSize(item.contents.deviceIndependentSize(), item.frame.size()));
    rect.moveCenter(item.frame.center());
    return rect;
}

void drawContents(QPainter &painter, const DraggingItem &item, const QRectF &rect, double scale)
{
    if (item.contents.isNull())
        return;
    // Scale first: the painter's smooth scaling skips pixels of a much larger picture.
    QPixmap scaled = item.contents.scaled((rect.size() * scale).toSize().expandedTo(QSize(1, 1)), Qt::IgnoreAspectRatio,
                                          Qt::SmoothTransformation);
    scaled.setDevicePixelRatio(1);
    painter.drawPixmap(rect, scaled, QRectF(scaled.rect()));
}

void drawBadge(QPainter &painter, const QPointF &center, qsizetype count, const QColor &accent)
{
    QFont font = painter.font();
    font.setPixelSize(kBadgeFontSize);
    font.setBold(true);
    const QString text = QString::number(count);
    const double width = std::max(kBadgeHeight, QFontMetricsF(font).horizontalAdvance(text) + 2 * kBadgePadding);
    QRectF badge(0, 0, width, kBadgeHeight);
    badge.moveCenter(center);

    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(badge, kBadgeHeight / 2, kBadgeHeight / 2);
    painter.setBrush(accent);
    const QRectF inner = badge.adjusted(kBadgeRing, kBadgeRing, -kBadgeRing, -kBadgeRing);
    painter.drawRoundedRect(inner, inner.height() / 2, inner.height() / 2);
    painter.setFont(font);
    painter.setPen(qGray(accent.rgb()) >= kLightFromGray ? Qt::black : Qt::white);
    painter.drawText(badge, Qt::AlignCenter, text);
}

QPoint clampedInto(const QPointF &point, const QSizeF &size)
{
    return QPoint(std::clamp(int(std::round(point.x())), 0, std::max(0, int(size.width()) - 1)),
                  std::clamp(int(std::round(point.y())), 0, std::max(0, int(size.height()) - 1)));
}

DragPicture finished(const QImage &image, const QPointF &hotSpot, const DragPictureStyle &style)
{
    const QImage shown = style.blends ? image : hardEdged(image);
    return {QPixmap::fromImage(shown), clampedInto(hotSpot, image.deviceIndependentSize())};
}

} // namespace

QImage framedPicture(const DraggingItem &item, double scale)
{
    QImage image = canvas(item.frame.size(), scale);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    drawContents(painter, item, pictureRect(item).translated(-item.frame.topLeft()), scale);
    return image;
}

QSizeF fittedSize(const QSizeF &contents, const QSizeF &frame)
{
    if (contents.isEmpty() || frame.isEmpty())
        return QSizeF(0, 0);
    return contents.scaled(frame, Qt::KeepAspectRatio);
}

QImage hardEdged(const QImage &image)
{
    QImage edged = image.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < edged.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(edged.scanLine(y));
        for (int x = 0; x < edged.width(); ++x)
            line[x] = qAlpha(line[x]) >= kOpaqueFromAlpha ? line[x] | 0xff000000u : 0u;
    }
    return edged;
}

DragPicture dragPicture(const QList<DraggingItem> &items, const QPointF &pointer, const DragPictureStyle &style)
{
    if (items.isEmpty())
        return finished(canvas(QSizeF(), style.scale), QPointF(), style);

    const QRectF front = pictureRect(items.first());
    if (items.size() == 1) {
        QImage image = canvas(front.size(), style.scale);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        drawContents(painter, items.first(), QRectF(QPointF(), front.size()), style.scale);
        painter.end();
        return finished(image, pointer - front.topLeft(), style);
    }

    const QRectF frame = items.first().frame;
    const double margin = std::max(std::ceil(kFanMargin * std::max(frame.width(), frame.height())), kBadgeHeight / 2);
    QImage image = canvas(frame.size() + QSizeF(2 * margin, 2 * margin), style.scale);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const QPointF center(margin + frame.width() / 2, margin + frame.height() / 2);
    for (qsizetype i = std::min<qsizetype>(items.size(), kFanAngles.size()); i-- > 0;) {
        QRectF rect(QPointF(), fittedSize(items[i].contents.deviceIndependentSize(), frame.size()));
        rect.moveCenter(QPointF());
        painter.save();
        painter.translate(center);
        painter.rotate(kFanAngles[std::size_t(i)]);
        drawContents(painter, items[i], rect, style.scale);
        painter.restore();
    }
    drawBadge(painter, QPointF(center.x() + front.width() / 2, center.y() - front.height() / 2), items.size(),
              style.accent);
    painter.end();
    return finished(image, pointer - frame.topLeft() + QPointF(margin, margin), style);
}
