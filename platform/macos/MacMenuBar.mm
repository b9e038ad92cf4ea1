// SPDX-License-Identifier: MIT
#include "platform/macos/MacMenuBar.h"

#include <utility>

#import <AppKit/AppKit.h>

void MacMenuBar::setMainMenu(std::unique_ptr<QMenu> menu)
{
    // Qt's own menu bar would put an application menu first.
    NSApplication.sharedApplication.mainMenu = menu ? menu->toNSMenu() : nil;
    mainMenu = std::move(menu);
}
