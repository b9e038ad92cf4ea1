// SPDX-License-Identifier: MIT
#include "platform/macos/MacIcon.h"

#include "platform/macos/MacConversions.h"

#include <QIconEngine>
#include <QPainter>
#include <QPixmap>

#import <AppKit/AppKit.h>

namespace {

constexpr float kDisabledOpacity = 0.4F;

class MacIconEngine : public QIconEngine {
public:
    MacIconEngine(NSImage *drawnImage, const QColor &color)
        : image(drawnImage)
        , tint(color)
    {
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        const QRectF device = painter->deviceTransform().mapRect(QRectF(rect));
        painter->drawPixmap(rect, pixmap(device.size().toSize(), mode, state));
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State) override
    {
        if (size.isEmpty())
            return {};
        QImage picture = fromNSImage(image, size);
        QPainter painter(&picture);
        if (tint.isValid()) {
            painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
            painter.fillRect(picture.rect(), tint);
        }
        if (mode == QIcon::Disabled) {
            painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
            painter.fillRect(picture.rect(), QColor::fromRgbF(0, 0, 0, kDisabledOpacity));
        }
        painter.end();
        return QPixmap::fromImage(picture);
    }

    QIconEngine *clone() const override { return new MacIconEngine(image, tint); }

    bool isNull() override { return false; }

private:
    NSImage *image;
    QColor tint;
};

} // namespace

QIcon macIcon(NSImage *image, const QColor &tint)
{
    return image ? QIcon(new MacIconEngine(image, tint)) : QIcon();
}
