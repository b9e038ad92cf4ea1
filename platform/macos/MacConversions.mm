// SPDX-License-Identifier: MIT
#include "platform/macos/MacConversions.h"

#include "platform/FileURLs.h"

#import <AppKit/AppKit.h>

namespace {

constexpr size_t kBitsPerComponent = 8;

// A Core Graphics context on the memory of `canvas`. In both, the first row is the topmost.
CFRef<CGContextRef> contextOn(QImage &canvas)
{
    const CFRef<CGColorSpaceRef> space(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
    const auto layout =
        static_cast<uint32_t>(kCGBitmapByteOrder32Host) | static_cast<uint32_t>(kCGImageAlphaPremultipliedFirst);
    return CFRef<CGContextRef>(CGBitmapContextCreate(canvas.bits(), static_cast<size_t>(canvas.width()),
                                                     static_cast<size_t>(canvas.height()), kBitsPerComponent,
                                                     static_cast<size_t>(canvas.bytesPerLine()), space.get(), layout));
}

QImage emptyCanvas(const QSize &size)
{
    QImage canvas(size, QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::transparent);
    return canvas;
}

} // namespace

void CFReleaser::operator()(const void *object) const
{
    CFRelease(object);
}

NSString *toNSString(const QString &text)
{
    return text.toNSString();
}

QString fromNSString(NSString *text)
{
    return text ? QString::fromNSString(text) : QString();
}

NSURL *toNSURL(const QUrl &url)
{
    return url.toNSURL();
}

std::optional<QUrl> fromNSURL(NSURL *url)
{
    // A file manager may identify a file by its number on the disk (a file reference URL) instead of its path.
    NSURL *path = url.fileURL ? url.filePathURL : nil;
    if (!path)
        return {};
    const QUrl file = QUrl::fromNSURL(path);
    if (!file.isLocalFile())
        return {};
    return fileURL(fileSystemPath(file));
}

NSColor *toNSColor(const QColor &color)
{
    const QColor rgb = color.spec() == QColor::ExtendedRgb ? color : color.toRgb();
    const CGFloat components[] = {rgb.redF(), rgb.greenF(), rgb.blueF(), rgb.alphaF()};
    NSColorSpace *space =
        color.spec() == QColor::ExtendedRgb ? NSColorSpace.extendedSRGBColorSpace : NSColorSpace.sRGBColorSpace;
    return [NSColor colorWithColorSpace:space components:components count:4];
}

std::optional<QColor> fromNSColor(NSColor *color)
{
    NSColor *extended = [color colorUsingColorSpace:NSColorSpace.extendedSRGBColorSpace];
    if (!extended)
        return {};
    // With components outside the range from 0 to 1, this is an extended colour.
    return QColor::fromRgbF(static_cast<float>(extended.redComponent), static_cast<float>(extended.greenComponent),
                            static_cast<float>(extended.blueComponent), static_cast<float>(extended.alphaComponent));
}

QImage fromCGImage(CGImageRef image, const QSize &bound)
{
    if (!image)
        return {};
    QSize size(static_cast<int>(CGImageGetWidth(image)), static_cast<int>(CGImageGetHeight(image)));
    if (size.width() > bound.width() || size.height() > bound.height())
        size = size.scaled(bound, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
    QImage canvas = emptyCanvas(size);
    if (const auto context = contextOn(canvas))
        CGContextDrawImage(context.get(), CGRectMake(0, 0, size.width(), size.height()), image);
    return canvas;
}

QImage fromNSImage(NSImage *image, const QSize &size)
{
    const QSizeF natural = QSizeF::fromCGSize(image.size);
    QImage canvas = emptyCanvas(size);
    const auto context = contextOn(canvas);
    if (!context || natural.isEmpty())
        return canvas;
    QRectF frame(QPointF(), natural.scaled(QSizeF(size), Qt::KeepAspectRatio));
    frame.moveCenter(QRectF(QPointF(), QSizeF(size)).center());
    [NSGraphicsContext saveGraphicsState];
    NSGraphicsContext.currentContext = [NSGraphicsContext graphicsContextWithCGContext:context.get() flipped:NO];
    [image drawInRect:frame.toCGRect() fromRect:NSZeroRect operation:NSCompositingOperationSourceOver fraction:1.0];
    [NSGraphicsContext restoreGraphicsState];
    return canvas;
}

NSImage *toNSImage(const QImage &image, const QSizeF &size)
{
    const CFRef<CGImageRef> picture(image.toCGImage());
    if (!picture)
        return nil;
    return [[NSImage alloc] initWithCGImage:picture.get() size:size.toCGSize()];
}

NSImage *toNSImage(const QIcon &icon, const QSize &size, double scale)
{
    const QImage image = icon.pixmap(size, scale).toImage();
    return toNSImage(image, image.deviceIndependentSize());
}
