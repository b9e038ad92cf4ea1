// SPDX-License-Identifier: MIT
#include "preferences/Controls.h"

#include <QApplication>
#include <QEvent>
#include <QPainter>

namespace {

constexpr float kSeparatorAlpha = 0.16F; // of the text's colour

// Leaves the wheel to whatever is around a control that does not have the focus.
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

QColor secondaryLabelColor(const QPalette &palette)
{
    return palette.color(QPalette::PlaceholderText);
}

QColor separatorColor(const QPalette &palette)
{
    QColor color = palette.color(QPalette::WindowText);
    color.setAlphaF(kSeparatorAlpha);
    return color;
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
    auto *label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    label->setFont(systemFont(points));
    return label;
}

QLabel *secondaryLabel(const QString &text, QWidget *parent, double points)
{
    QLabel *label = fieldLabel(text, parent, points);
    label->setForegroundRole(QPalette::PlaceholderText);
    return label;
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
