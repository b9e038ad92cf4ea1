// SPDX-License-Identifier: MIT
#include "shelf/TileViews.h"

#include "shelf/ShelfMetrics.h"

#include <QPainter>
#include <QPainterPath>
#include <QTextLayout>
#include <QTextOption>

#include <algorithm>

using namespace ShelfMetrics;

TileImageView::TileImageView(QWidget *parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void TileImageView::setImage(const QPixmap &bitmap, const QSizeF &pointSize)
{
    pixmap = bitmap;
    icon = QIcon();
    size = pointSize;
    update();
}

void TileImageView::setImage(const QIcon &fileIcon)
{
    pixmap = QPixmap();
    icon = fileIcon;
    size = QSizeF(kFileIconSize, kFileIconSize);
    update();
}

QPixmap TileImageView::image(double edge) const
{
    const int points = std::max(1, qRound(edge));
    return icon.isNull() ? pixmap : icon.pixmap(QSize(points, points), devicePixelRatioF());
}

void TileImageView::setAlpha(double value)
{
    alpha = value;
    update();
}

QRectF TileImageView::fittedRect(const QSizeF &size, const QRectF &bounds)
{
    if (size.isEmpty() || bounds.isEmpty())
        return {};
    const QSizeF fitted = size.scaled(bounds.size(), Qt::KeepAspectRatio);
    return QRectF(QPointF(bounds.center().x() - fitted.width() / 2, bounds.top()), fitted);
}

void TileImageView::paintEvent(QPaintEvent *)
{
    if (!hasImage())
        return;
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.setOpacity(alpha);
    QPainterPath clip;
    clip.addRoundedRect(rect(), kImageCornerRadius, kImageCornerRadius);
    painter.setClipPath(clip);
    const QRectF target = fittedRect(size, rect());
    // An icon returns no pixmap larger than it has.
    const QPixmap shown =
        icon.isNull() ? pixmap : icon.pixmap(target.toAlignedRect().size(), painter.device()->devicePixelRatioF());
    // A picture may have other proportions than were requested, such as a page or a turned photo. Do not stretch it.
    painter.drawPixmap(fittedRect(shown.size(), target), shown, QRectF(shown.rect()));
}

TileLabel::TileLabel(QWidget *parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    QFont medium = font();
    medium.setPixelSize(kNameFontSize);
    medium.setWeight(QFont::Medium);
    setFont(medium);
}

void TileLabel::setText(const QString &text)
{
    if (content == text)
        return;
    content = text;
    broken.clear();
    update();
}

void TileLabel::setAlpha(double value)
{
    alpha = value;
    update();
}

QStringList TileLabel::lines(const QString &text, const QFont &font, double width)
{
    if (text.isEmpty())
        return {};
    // Show a line break in a file name as a space: it would use up one of the two lines.
    QString shown = text;
    for (QChar &character : shown) {
        if (character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
            character == QChar::ParagraphSeparator)
            character = QLatin1Char(' ');
    }
    const QFontMetricsF metrics(font);
    QTextLayout layout(shown, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    QStringList broken;
    int start = 0;
    while (broken.size() < kNameLines - 1) {
        QTextLine line = layout.createLine();
        if (!line.isValid())
            break;
        line.setLineWidth(width);
        broken.append(shown.mid(line.textStart(), line.textLength()).trimmed());
        start = line.textStart() + line.textLength();
    }
    layout.endLayout();
    if (start < shown.size())
        broken.append(metrics.elidedText(shown.mid(start).trimmed(), Qt::ElideMiddle, width));
    return broken;
}

void TileLabel::resizeEvent(QResizeEvent *)
{
    broken.clear();
}

void TileLabel::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange)
        broken.clear();
    QWidget::changeEvent(event);
}

void TileLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setOpacity(alpha);
    const QFontMetricsF metrics(font());
    // Two lines share the label's height, whatever line height the font reports.
    const double lineHeight = std::min(metrics.height(), static_cast<double>(height()) / kNameLines);
    double baseline = metrics.ascent() - std::max(0.0, metrics.height() - lineHeight) / 2;
    const auto drawLine = [&](const QString &line, const QPointF &offset, const QColor &color) {
        painter.setPen(color);
        painter.drawText(QRectF(0, baseline - metrics.ascent(), width(), metrics.height()).translated(offset),
                         Qt::AlignHCenter | Qt::AlignTop | Qt::TextSingleLine, line);
    };
    if (broken.isEmpty())
        broken = lines(content, font(), width());
    for (const QString &line : std::as_const(broken)) {
        drawLine(line, QPointF(0, 1), QColor::fromRgbF(0, 0, 0, kNameShadowAlpha));
        drawLine(line, QPointF(), Qt::white);
        baseline += lineHeight;
    }
}

TileRemoveButton::TileRemoveButton(const QIcon &symbol, QWidget *parent)
    : QAbstractButton(parent)
{
    setIcon(symbol);
    setFocusPolicy(Qt::NoFocus);
    setAccessibleName(tr("Remove"));
}

void TileRemoveButton::setAlpha(double value)
{
    opacity = value;
    update();
}

void TileRemoveButton::paintEvent(QPaintEvent *)
{
    if (opacity <= 0)
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(opacity);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isDown() ? kRemoveColor.darker(125) : kRemoveColor);
    painter.drawRoundedRect(rect(), kRemoveCornerRadius, kRemoveCornerRadius);
    const QRectF symbol(QPointF((width() - kRemoveSymbolSize) / 2, (height() - kRemoveSymbolSize) / 2),
                        QSizeF(kRemoveSymbolSize, kRemoveSymbolSize));
    icon().paint(&painter, symbol.toAlignedRect());
}
