// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QColorDialog>
#include <QPointer>
#include <QPushButton>

#include <functional>

// A button that shows a colour and opens the colour panel to choose another. Like the panel itself it applies each
// colour at once; there is nothing to confirm or to take back.
class ColorWell : public QPushButton {
    Q_OBJECT

public:
    explicit ColorWell(QWidget *parent);

    QColor color() const { return shownColor; }
    void setColor(const QColor &color);

    // The open colour panel, or null.
    QColorDialog *colorPanel() const { return panel; }

    // The user chose another colour, which color() now returns.
    std::function<void()> onChange;

protected:
    void paintEvent(QPaintEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void openColorPanel();

    QColor shownColor;
    QPointer<QColorDialog> panel;
};
