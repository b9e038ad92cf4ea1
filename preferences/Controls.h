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

// A weaker colour than `text`, for secondary text that is still readable.
QColor secondaryLabelColor(const QPalette &palette, QPalette::ColorRole text = QPalette::WindowText);

// The colour for thin lines between texts of the colour `text`.
QColor separatorColor(const QPalette &palette, QPalette::ColorRole text = QPalette::WindowText);

// Draws `image` in the middle of `frame`, scaled up or down to fit it.
void drawImage(QPainter &painter, const QIcon &image, const QRect &frame);

// Draws the row's text into `frame`, aligned to the side where the interface's language begins, and elides it.
void drawTitle(QPainter &painter, const QStyleOptionViewItem &row, const QRect &frame, QPalette::ColorRole text);

// Draws the style's focus mark on the row that has the keyboard focus, once the user has used the keyboard.
void drawFocusMark(QPainter &painter, const QStyleOptionViewItem &row);

// A label in the standard colour, not editable.
QLabel *fieldLabel(const QString &text, QWidget *parent, double points = kLabelSize);

// The same in the secondary colour.
QLabel *secondaryLabel(const QString &text, QWidget *parent, double points = kLabelSize);

QCheckBox *checkBox(const QString &title, bool on, QWidget *parent);

// A pop-up button with `titles` that shows the one at `index`, or none when `index` is out of range.
QComboBox *popUp(const QStringList &titles, qint64 index, QWidget *parent);

// The index of a choice in the pop-up button that lists all of them.
template<typename Choice>
qint64 indexOf(Choice choice)
{
    return static_cast<qint64>(choice);
}

// Makes `label` name `control` for a screen reader.
void setLabel(QLabel &label, QWidget &control);

// Names a control for a screen reader, without a visible label.
void setSpokenLabel(const QString &text, QWidget &control);

// Lets the mouse wheel change `control` only while it has the focus, so that scrolling past it is safe.
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
