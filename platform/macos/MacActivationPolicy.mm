// SPDX-License-Identifier: MIT
#include "platform/macos/MacActivationPolicy.h"

#include <QWidget>

#import <AppKit/AppKit.h>

void MacActivationPolicy::set(Policy policy)
{
    [NSApplication.sharedApplication setActivationPolicy:policy == Policy::Regular
                                                             ? NSApplicationActivationPolicyRegular
                                                             : NSApplicationActivationPolicyAccessory];
}

void MacActivationPolicy::activate(QWidget &window)
{
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
    [NSApplication.sharedApplication activateIgnoringOtherApps:YES];
}
