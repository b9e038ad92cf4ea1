// SPDX-License-Identifier: MIT
#include "preferences/ColorWell.h"

#include "preferences/Controls.h"

#include <QHideEvent>
#include <QStyleOptionButton>
#include <QStylePainter>

namespace {

// Points.
constexpr QSize kSize(48, 26);
constexpr int kBorder = 5;
constexpr int kCheckSize = 4;

void drawChecker(QPainter &painter, const QRect &frame)
{
    painter.fillRect(frame, Qt::white);
    for (int y = 0; y * kCheckSize < frame.height(); ++y) {
        for (int x = y % 2; x * kCheckSize < frame.width(); x += 2) {
            const QRect check(frame.x() + x * kCheckSize, frame.y() + y * kCheckSize, kCheckSize, kCheckSize);
            painter.fillRect(check & frame, Qt::lightGray);
        }
    }
}

} // namespace

ColorWell::ColorWell(QWidget *parent)
    : QPushButton(parent)
{
    setFixedSize(kSize);
    connect(this, &QPushButton::clicked, this, &ColorWell::openColorPanel);
}

void ColorWell::setColor(const QColor &color)
{
    shownColor = color;
    setAccessibleDescription(color.name(QColor::HexArgb));
    update();
}

void ColorWell::openColorPanel()
{
    if (!panel) {
        panel = new QColorDialog(shownColor, this);
        panel->setAttribute(Qt::WA_DeleteOnClose);
        // The tint has an intensity in place of an alpha.
        panel->setOptions(QColorDialog::NoButtons);
        panel->setWindowTitle(accessibleName());
        connect(panel, &QColorDialog::currentColorChanged, this, &ColorWell::choose);
        connect(panel, &QColorDialog::rejected, this, [this, before = shownColor] {
            // Qt's dialog is hidden while the desktop shows its own.
            if (panelTakesBack && panel->testAttribute(Qt::WA_DontShowOnScreen) && shownColor != before)
                choose(before);
        });
    }
    panel->show();
    panel->raise();
    panel->activateWindow();
}

void ColorWell::choose(const QColor &color)
{
    setColor(color);
    if (onChange)
        onChange();
}

void ColorWell::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    painter.drawControl(QStyle::CE_PushButton, option);

    const QRect swatch = rect().adjusted(kBorder, kBorder, -kBorder, -kBorder);
    if (shownColor.alpha() < 255)
        drawChecker(painter, swatch);
    painter.fillRect(swatch, shownColor);
    painter.setPen(separatorColor(palette()));
    painter.drawRect(swatch.adjusted(0, 0, -1, -1));
}

void ColorWell::hideEvent(QHideEvent *event)
{
    QPushButton::hideEvent(event);
    // The window was closed, not minimised: close its panel too. The chosen colour stays.
    if (panel && !event->spontaneous())
        panel->accept();
}
