// SPDX-License-Identifier: MIT
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QFont>
#include <QFrame>
#include <QIcon>
#include <QLabel>
#include <QStyleOptionViewItem>

// The controls that the panes are made of.

constexpr double kLabelSize = 13; // points

// The system's font at `points`.
QFont systemFont(double points);

// Text that steps back behind what is written in `text`, and can still be read.
QColor secondaryLabelColor(const QPalette &palette, QPalette::ColorRole text = QPalette::WindowText);

// The system's colour for thin lines among what is written in `text`.
QColor separatorColor(const QPalette &palette, QPalette::ColorRole text = QPalette::WindowText);

// Draws `image` in the middle of `frame`, scaled up or down to fit it.
void drawImage(QPainter &painter, const QIcon &image, const QRect &frame);

// Draws the row's text into `frame`, which begins where the interface's language begins; what does not fit is left out.
void drawTitle(QPainter &painter, const QStyleOptionViewItem &row, const QRect &frame, QPalette::ColorRole text);

// Marks the row of a list that the keyboard acts on, in the style's own way, once the keyboard is being used.
void drawFocusMark(QPainter &painter, const QStyleOptionViewItem &row);

// A label in the standard colour, not editable.
QLabel *fieldLabel(const QString &text, QWidget *parent, double points = kLabelSize);

// The same in the secondary colour.
QLabel *secondaryLabel(const QString &text, QWidget *parent, double points = kLabelSize);

QCheckBox *checkBox(const QString &title, bool on, QWidget *parent);

// A pop-up button with `titles`, showing the one at `index`; none when there is none at it.
QComboBox *popUp(const QStringList &titles, qint64 index, QWidget *parent);

// The index of a choice in the pop-up button that lists all of them.
template<typename Choice>
qint64 indexOf(Choice choice)
{
    return static_cast<qint64>(choice);
}

// Makes `label` name `control` for a screen reader.
void setLabel(QLabel &label, QWidget &control);

// Names a control that needs no label on screen, for a screen reader alone.
void setSpokenLabel(const QString &text, QWidget &control);

// Keeps a turn of the mouse wheel from changing `control` unless it has the focus, so that scrolling past it is safe.
void guardFromWheel(QWidget &control);

// A thin horizontal line.
class Separator : public QFrame {
    Q_OBJECT

public:
    explicit Separator(QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;
};

// Shows an icon scaled up or down to its own size.
class ImageView : public QWidget {
    Q_OBJECT

public:
    ImageView(const QIcon &icon, const QSize &size, QWidget *parent);

    const QIcon image;

protected:
    void paintEvent(QPaintEvent *event) override;
};
