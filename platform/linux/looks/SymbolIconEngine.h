// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QColor>
#include <QIconEngine>

#include <memory>

class QSvgRenderer;

// Draws one SVG picture at exactly the requested size in pixels.
class SymbolIconEngine : public QIconEngine {
public:
    // Replaces "currentColor" in `svg` by `tint`, whose alpha applies to the whole picture. An invalid tint changes
    // nothing.
    SymbolIconEngine(const QByteArray &svg, const QColor &tint);
    ~SymbolIconEngine() override;

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    QIconEngine *clone() const override;
    QString key() const override;
    bool isNull() override;

private:
    std::shared_ptr<QSvgRenderer> renderer; // shared by the copies of one icon
    double opacity = 1.0;
};
