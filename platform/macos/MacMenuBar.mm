// SPDX-License-Identifier: MIT
#include "platform/macos/MacMenuBar.h"

#include "platform/macos/MacConversions.h"

#include <utility>

#import <AppKit/AppKit.h>

namespace {

// Sends the items to the first responder that answers to the action they are named for. Qt's view answers to those that
// have a role in Qt as it does to its own items, and views of AppKit's, such as the fields of an open panel, do as
// ever.
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

// AppKit appends items of its own to an Edit menu, for dictation and for symbols, unless these say that it should not.
void keepOutForeignItems()
{
    [NSUserDefaults.standardUserDefaults registerDefaults:@{
        @"NSDisabledDictationMenuItem" : @YES,
        @"NSDisabledCharacterPaletteMenuItem" : @YES
    }];
}

// Qt gives an item its submenu only as the menu around it opens, which a menu bar never does.
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
    // Qt's own menu bar would put an application menu first.
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
