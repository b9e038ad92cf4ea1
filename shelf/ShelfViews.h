// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>
#include <QColor>
#include <QWidget>

class FloatingPanels;

// The dark translucent background of a panel, with rounded corners and a border that shows where a drop would land.
// It lets every mouse event through.
class VisualEffectView : public QWidget {
    Q_OBJECT

public:
    // Each drawing asks `panels` whether the window is translucent, and whether the desktop draws its background.
    VisualEffectView(const FloatingPanels &panels, QWidget *parent);

    double borderWidth() const { return layerBorderWidth; }
    QColor borderColor() const { return layerBorderColor; }

    // Points; 0 hides the border.
    void setBorder(double width, const QColor &color);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const FloatingPanels &floatingPanels;
    double layerBorderWidth = 0;
    QColor layerBorderColor;
};

// A layer of one colour over the background. It lets every mouse event through.
class ColorView : public QWidget {
    Q_OBJECT

public:
    ColorView(double cornerRadius, QWidget *parent);

    QColor color() const { return layerColor; }
    void setColor(const QColor &color);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    double cornerRadius;
    QColor layerColor;
};

// A plain symbol button of the shelf's header.
class HeaderButton : public QAbstractButton {
    Q_OBJECT

public:
    // `label` is the tool tip and what a screen reader says.
    HeaderButton(const QIcon &symbol, const QString &label, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;
};
