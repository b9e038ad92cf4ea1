// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QIcon>
#include <QImage>
#include <QSizeF>
#include <QString>
#include <QUrl>

#include <memory>
#include <optional>
#include <type_traits>

Q_FORWARD_DECLARE_MUTABLE_CG_TYPE(CGImage)
Q_FORWARD_DECLARE_OBJC_CLASS(NSColor);
Q_FORWARD_DECLARE_OBJC_CLASS(NSImage);
Q_FORWARD_DECLARE_OBJC_CLASS(NSString);
Q_FORWARD_DECLARE_OBJC_CLASS(NSURL);

// Values of Qt as values of Cocoa and back, for the services of this folder.

// Owns what a Core Foundation function named "Create" or "Copy" answered: CFRef<CFDataRef>.
struct CFReleaser {
    void operator()(const void *object) const;
};
template<typename Ref>
using CFRef = std::unique_ptr<std::remove_pointer_t<Ref>, CFReleaser>;

NSString *toNSString(const QString &text);

// An empty string for nil.
QString fromNSString(NSString *text);

NSURL *toNSURL(const QUrl &url);

// The URL of a file on this machine, equal to what the same file has when Qt hands it over; nothing for any other.
std::optional<QUrl> fromNSURL(NSURL *url);

// In the sRGB colour space; also for components outside the ordinary range.
NSColor *toNSColor(const QColor &color);

// Nothing for what has no components, such as a pattern.
std::optional<QColor> fromNSColor(NSColor *color);

// `image`, made smaller where it is larger than `bound` pixels. Null when there is none.
QImage fromCGImage(CGImageRef image, const QSize &bound);

// `image` drawn as large as fits into the middle of `size` pixels.
QImage fromNSImage(NSImage *image, const QSize &size);

// `image` at a size of `size` points. Nil for one without pixels.
NSImage *toNSImage(const QImage &image, const QSizeF &size);

// `icon` of at most `size` points, at `scale` pixels a point.
NSImage *toNSImage(const QIcon &icon, const QSize &size, double scale);
