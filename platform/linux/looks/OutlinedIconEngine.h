// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>
#include <QIconEngine>

// Draws a light symbol with a dark outline, which is visible on light and dark panels. It draws each requested size
// when it is requested, because a tray requests only a few.
class OutlinedIconEngine : public QIconEngine {
public:
    // `outline` is the shape of `symbol` in the colour of the outline. `name` is an icon of the icon theme, for panels
    // that colour icons themselves, or empty.
    OutlinedIconEngine(QIcon symbol, QIcon outline, QString name = {});

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    // The sizes that trays show, for a tray that takes pictures instead of a window.
    QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) override;
    QIconEngine *clone() const override;
    QString key() const override;
    QString iconName() override;

private:
    QIcon symbol;
    QIcon outline;
    QString name;
};
