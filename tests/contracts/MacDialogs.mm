// SPDX-License-Identifier: MIT
#include "tests/contracts/Dialogs.h"

#include "platform/macos/MacConversions.h"

#import <AppKit/AppKit.h>

namespace {

NSButton *buttonIn(NSView *view, NSString *title)
{
    if ([view isKindOfClass:[NSButton class]] && [static_cast<NSButton *>(view).title isEqualToString:title])
        return static_cast<NSButton *>(view);
    for (NSView *subview in view.subviews) {
        if (NSButton *button = buttonIn(subview, title))
            return button;
    }
    return nil;
}

} // namespace

bool pressButton(const QString &title)
{
    NSButton *button = buttonIn(NSApplication.sharedApplication.modalWindow.contentView, toNSString(title));
    [button performClick:nil];
    return button != nil;
}

bool cancelDialog()
{
    NSWindow *dialog = NSApplication.sharedApplication.modalWindow;
    if (![dialog isKindOfClass:[NSSavePanel class]])
        return false;
    [static_cast<NSSavePanel *>(dialog) cancel:nil];
    return true;
}
