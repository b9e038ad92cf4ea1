// SPDX-License-Identifier: MIT
#include "preferences/Controls.h"

#include <QApplication>
#include <QEvent>
#include <QPainter>

namespace {

// Alphas applied to the text colour.
constexpr float kSeparatorAlpha = 0.16F;
constexpr float kSecondaryAlpha = 0.62F;

QColor faded(const QPalette &palette, QPalette::ColorRole text, float alpha)
{
    QColor color = palette.color(text);
    color.setAlphaF(alpha);
    return color;
}

// A label in the secondary colour of its current palette.
class SecondaryLabel : public QLabel {
public:
    explicit SecondaryLabel(QWidget *parent)
        : QLabel(parent)
    {
        setForegroundRole(QPalette::PlaceholderText);
        tint();
    }

protected:
    void changeEvent(QEvent *event) override
    {
        QLabel::changeEvent(event);
        if (event->type() == QEvent::PaletteChange)
            tint();
    }

private:
    void tint()
    {
        // The palette's own secondary colour may be unreadable: a dark palette may have black.
        const QColor color = secondaryLabelColor(palette());
        if (palette().color(foregroundRole()) == color)
            return;
        QPalette tinted;
        tinted.setColor(foregroundRole(), color);
        setPalette(tinted);
    }
};

QLabel *withText(QLabel *label, const QString &text, double points)
{
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    label->setFont(systemFont(points));
    return label;
}

// Passes wheel events of a control without the focus on to its parent.
class WheelGuard : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::Wheel || static_cast<QWidget *>(watched)->hasFocus())
            return false;
        event->ignore();
        return true;
    }
};

} // namespace

QFont systemFont(double points)
{
    QFont font = QApplication::font();
    // A point of the layout is a device-independent pixel, whatever the display's density.
    font.setPixelSize(qRound(points));
    return font;
}

QColor secondaryLabelColor(const QPalette &palette, QPalette::ColorRole text)
{
    return faded(palette, text, kSecondaryAlpha);
}

QColor separatorColor(const QPalette &palette, QPalette::ColorRole text)
{
    return faded(palette, text, kSeparatorAlpha);
}

void drawImage(QPainter &painter, const QIcon &image, const QRect &frame)
{
    if (image.isNull())
        return;
    const QPixmap pixmap = image.pixmap(frame.size(), painter.device()->devicePixelRatioF());
    QRectF target(QPointF(), QSizeF(pixmap.size()).scaled(frame.size(), Qt::KeepAspectRatio));
    target.moveCenter(QRectF(frame).center());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(target, pixmap, QRectF(pixmap.rect()));
}

void drawTitle(QPainter &painter, const QStyleOptionViewItem &row, const QRect &frame, QPalette::ColorRole text)
{
    painter.save();
    painter.setFont(row.font);
    // Align by the interface's direction, but order the letters by the title's own.
    painter.setLayoutDirection(Qt::LayoutDirectionAuto);
    const Qt::Alignment leading = QStyle::visualAlignment(row.direction, Qt::AlignLeft | Qt::AlignVCenter);
    const bool selected = row.state & QStyle::State_Selected;
    painter.setPen(row.palette.color(selected ? QPalette::HighlightedText : text));
    painter.drawText(frame, static_cast<int>(leading | Qt::AlignAbsolute | Qt::TextSingleLine),
                     row.fontMetrics.elidedText(row.text, Qt::ElideRight, frame.width()));
    painter.restore();
}

void drawFocusMark(QPainter &painter, const QStyleOptionViewItem &row)
{
    if (!(row.state & QStyle::State_HasFocus) || !(row.state & QStyle::State_KeyboardFocusChange))
        return;
    QStyleOptionFocusRect focus;
    focus.QStyleOption::operator=(row);
    const bool selected = row.state & QStyle::State_Selected;
    focus.backgroundColor = row.palette.color(selected ? QPalette::Highlight : QPalette::Window);
    const QStyle *style = row.widget ? row.widget->style() : QApplication::style();
    style->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, row.widget);
}

QLabel *fieldLabel(const QString &text, QWidget *parent, double points)
{
    return withText(new QLabel(parent), text, points);
}

QLabel *secondaryLabel(const QString &text, QWidget *parent, double points)
{
    return withText(new SecondaryLabel(parent), text, points);
}

QCheckBox *checkBox(const QString &title, bool on, QWidget *parent)
{
    auto *box = new QCheckBox(title, parent);
    box->setChecked(on);
    return box;
}

QComboBox *popUp(const QStringList &titles, qint64 index, QWidget *parent)
{
    auto *box = new QComboBox(parent);
    box->addItems(titles);
    box->setCurrentIndex(index >= 0 && index < titles.size() ? static_cast<int>(index) : -1);
    guardFromWheel(*box);
    return box;
}

void setLabel(QLabel &label, QWidget &control)
{
    label.setBuddy(&control);
    control.setAccessibleName(label.text());
}

void setSpokenLabel(const QString &text, QWidget &control)
{
    QLabel *label = fieldLabel(text, control.parentWidget());
    label->hide();
    setLabel(*label, control);
}

void guardFromWheel(QWidget &control)
{
    control.setFocusPolicy(Qt::StrongFocus);
    control.installEventFilter(new WheelGuard(&control));
}

Separator::Separator(QWidget *parent)
    : QFrame(parent)
{
    setFrameShape(QFrame::HLine);
    setFixedHeight(1);
}

void Separator::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), separatorColor(palette()));
}

ImageView::ImageView(const QIcon &icon, const QSize &size, QWidget *parent)
    : QWidget(parent)
    , image(icon)
{
    setFixedSize(size);
}

void ImageView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    drawImage(painter, image, rect());
}
