// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QColorDialog>
#include <QPointer>
#include <QPushButton>

#include <functional>

// A button that shows a colour and opens the colour panel, the desktop's own where there is one. It applies each colour
// at once, as the panel reports it. It asks for a panel without buttons, so there is nothing to confirm or to cancel.
class ColorWell : public QPushButton {
    Q_OBJECT

public:
    explicit ColorWell(QWidget *parent);

    QColor color() const { return shownColor; }
    void setColor(const QColor &color);

    // The open colour panel, or null.
    QColorDialog *colorPanel() const { return panel; }

    // Whether the desktop's own panel has a cancel button all the same, which restores the colour it opened with.
    bool panelTakesBack = false;

    // Called when the user has chosen another colour, which color() returns.
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
