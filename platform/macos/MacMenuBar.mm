// SPDX-License-Identifier: MIT
#include "platform/macos/MacMenuBar.h"

#include "platform/macos/MacConversions.h"

#include <utility>

#import <AppKit/AppKit.h>

namespace {

// Sends each item to the first responder with the action in its name. Qt's view implements the actions that have a role
// in Qt, and AppKit's views, such as the text fields of an open panel, implement theirs.
void sendToFirstResponder(const QMenu &menu, NSMenu *native)
{
    for (const QAction *action : menu.actions()) {
        if (action->objectName().isEmpty())
            continue;
        NSMenuItem *item = [native itemWithTitle:toNSString(action->text())];
        item.action = NSSelectorFromString(toNSString(action->objectName()));
        item.target = nil;
    }
}

// AppKit adds items for dictation and symbols to an Edit menu, unless these defaults forbid it.
void keepOutForeignItems()
{
    [NSUserDefaults.standardUserDefaults registerDefaults:@{
        @"NSDisabledDictationMenuItem" : @YES,
        @"NSDisabledCharacterPaletteMenuItem" : @YES
    }];
}

// Qt gives an item its submenu only when the menu around it opens, and a menu bar never opens.
NSMenuItem *titleItem(QMenu &menu)
{
    NSMenu *submenu = menu.toNSMenu();
    submenu.title = toNSString(menu.title());
    sendToFirstResponder(menu, submenu);
    NSMenuItem *item = [[NSMenuItem alloc] initWithTitle:submenu.title action:nil keyEquivalent:@""];
    item.submenu = submenu;
    return item;
}

} // namespace

void MacMenuBar::setMainMenu(std::unique_ptr<QMenu> menu)
{
    // Qt's own menu bar would have an application menu first.
    NSMenu *bar = [[NSMenu alloc] initWithTitle:@""];
    const QList<QAction *> titles = menu ? menu->actions() : QList<QAction *>();
    for (const QAction *title : titles) {
        if (title->menu())
            [bar addItem:titleItem(*title->menu())];
    }
    keepOutForeignItems();
    NSApplication.sharedApplication.mainMenu = bar;
    mainMenu = std::move(menu);
}
