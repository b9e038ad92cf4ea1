// SPDX-License-Identifier: MIT
#include "platform/macos/MacColorArchive.h"

#include "platform/macos/MacConversions.h"

#import <AppKit/AppKit.h>

std::optional<QByteArray> MacColorArchive::archive(const QColor &color) const
{
    if (!color.isValid())
        return {};
    NSData *data = [NSKeyedArchiver archivedDataWithRootObject:toNSColor(color) requiringSecureCoding:NO error:nil];
    if (!data)
        return {};
    return QByteArray::fromNSData(data);
}

std::optional<QColor> MacColorArchive::unarchive(const QByteArray &data) const
{
    NSColor *color = [NSKeyedUnarchiver unarchivedObjectOfClass:[NSColor class] fromData:data.toNSData() error:nil];
    return color ? fromNSColor(color) : std::nullopt;
}
