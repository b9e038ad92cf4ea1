// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>
#include <QIconEngine>

// Draws a light symbol with a dark outline, so that it stands out on light and dark panels alike. It draws when asked,
// at the size asked for: a tray wants one size, or a few.
class OutlinedIconEngine : public QIconEngine {
public:
    // `outline` is the shape of `symbol` in the outline's colour; `name` that of an icon in the icon theme, for panels
    // that rather colour one themselves, or empty.
    OutlinedIconEngine(QIcon symbol, QIcon outline, QString name = {});

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    // The sizes that trays show, for a tray that gets the pictures and not a window.
    QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) override;
    QIconEngine *clone() const override;
    QString key() const override;
    QString iconName() override;

private:
    QIcon symbol;
    QIcon outline;
    QString name;
};
