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

// Converts values between Qt and Cocoa, for the services of this folder.

// Owns the result of a Core Foundation function named "Create" or "Copy": CFRef<CFDataRef>.
struct CFReleaser {
    void operator()(const void *object) const;
};
template<typename Ref>
using CFRef = std::unique_ptr<std::remove_pointer_t<Ref>, CFReleaser>;

NSString *toNSString(const QString &text);

// Returns an empty string for nil.
QString fromNSString(NSString *text);

NSURL *toNSURL(const QUrl &url);

// The URL of a file on this machine, equal to the URL that Qt delivers for the same file. Nothing for any other URL.
std::optional<QUrl> fromNSURL(NSURL *url);

// In the sRGB colour space. Components may be outside the range from 0 to 1.
NSColor *toNSColor(const QColor &color);

// Nothing for a colour without components, such as a pattern.
std::optional<QColor> fromNSColor(NSColor *color);

// Converts `image`, and reduces it if it is larger than `bound` pixels. Null without an image.
QImage fromCGImage(CGImageRef image, const QSize &bound);

// Draws `image` as large as fits into the middle of `size` pixels.
QImage fromNSImage(NSImage *image, const QSize &size);

// Converts `image` to an image of `size` points. Nil for an image without pixels.
NSImage *toNSImage(const QImage &image, const QSizeF &size);

// `icon` of at most `size` points, at `scale` pixels a point.
NSImage *toNSImage(const QIcon &icon, const QSize &size, double scale);
