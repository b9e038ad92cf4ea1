// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QColorDialog>
#include <QPointer>
#include <QPushButton>

#include <functional>

// A button that shows a colour and opens the colour panel, the desktop's own where it has one, to choose another. It
// applies each colour at once, as the panel reports it; there is nothing to confirm, nor to take back as long as the
// panel does without buttons, as it is asked to.
class ColorWell : public QPushButton {
    Q_OBJECT

public:
    explicit ColorWell(QWidget *parent);

    QColor color() const { return shownColor; }
    void setColor(const QColor &color);

    // The open colour panel, or null.
    QColorDialog *colorPanel() const { return panel; }

    // A panel of the desktop's own brings a button to cancel all the same, which gives back the colour it opened with.
    bool panelTakesBack = false;

    // The user chose another colour, which color() now returns.
    std::function<void()> onChange;

protected:
    void paintEvent(QPaintEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void openColorPanel();
    void choose(const QColor &color);

    QColor shownColor;
    QPointer<QColorDialog> panel;
};
