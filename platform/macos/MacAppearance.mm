// SPDX-License-Identifier: MIT
#include "platform/macos/MacAppearance.h"

#include "platform/macos/MacConversions.h"
#include "platform/macos/MacIcon.h"

#import <AppKit/AppKit.h>

namespace {

constexpr CGFloat kRemovePointSize = 8;
constexpr CGFloat kDropZonePointSize = 26;

// The configuration of symbols that are not drawn as they are; nil for all others.
NSImageSymbolConfiguration *configurationOf(const QString &name)
{
    if (name == QLatin1String("xmark"))
        return [NSImageSymbolConfiguration configurationWithPointSize:kRemovePointSize weight:NSFontWeightBold];
    if (name == QLatin1String("tray.and.arrow.down"))
        return [NSImageSymbolConfiguration configurationWithPointSize:kDropZonePointSize weight:NSFontWeightLight];
    return nil;
}

} // namespace

QColor MacAppearance::accentColor() const
{
    return fromNSColor(NSColor.controlAccentColor).value_or(QColor(Qt::blue));
}

QIcon MacAppearance::symbol(const QString &name, const QColor &tint) const
{
    NSImage *image = [NSImage imageWithSystemSymbolName:toNSString(name) accessibilityDescription:nil];
    NSImageSymbolConfiguration *configuration = configurationOf(name);
    return macIcon(configuration ? [image imageWithSymbolConfiguration:configuration] : image, tint);
}

QIcon MacAppearance::applicationIcon() const
{
    NSImage *image = [NSImage imageNamed:@"AppIcon"];
    return macIcon(image ? image : NSApplication.sharedApplication.applicationIconImage);
}

double MacAppearance::legacyScrollerWidth() const
{
    return [NSScroller scrollerWidthForControlSize:NSControlSizeRegular scrollerStyle:NSScrollerStyleLegacy];
}
