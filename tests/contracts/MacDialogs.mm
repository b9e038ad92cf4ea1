// SPDX-License-Identifier: MIT
#include "tests/contracts/Dialogs.h"

#include "platform/macos/MacConversions.h"
#include "tests/macos/ModalLoop.h"

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
    wakeModalLoop();
    return button != nil;
}

bool cancelDialog()
{
    // A panel is drawn by another process, and does not hear what comes before that.
    static bool isCancelling = false;
    static __weak NSWindow *cancelled = nil;
    NSWindow *dialog = NSApplication.sharedApplication.modalWindow;
    if (isCancelling && (!dialog || dialog != cancelled)) {
        isCancelling = false;
        return true;
    }
    if (![dialog isKindOfClass:[NSSavePanel class]])
        return false;
    isCancelling = true;
    cancelled = dialog;
    [static_cast<NSSavePanel *>(dialog) cancel:nil];
    wakeModalLoop();
    return false;
}
