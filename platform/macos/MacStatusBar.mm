// SPDX-License-Identifier: MIT
#include "platform/macos/MacStatusBar.h"

#include "platform/macos/MacConversions.h"

#include <utility>

#import <AppKit/AppKit.h>

namespace {

class MacStatusItem : public StatusItem {
public:
    MacStatusItem() = default;
    Q_DISABLE_COPY_MOVE(MacStatusItem)
    ~MacStatusItem() override
    {
        [NSStatusBar.systemStatusBar removeStatusItem:item];
        release(std::move(menu));
    }

    void setSymbol(const QString &name, const QString &accessibilityDescription) override
    {
        item.button.image = [NSImage imageWithSystemSymbolName:toNSString(name)
                                      accessibilityDescription:toNSString(accessibilityDescription)];
    }

    void setMenu(std::unique_ptr<QMenu> newMenu) override
    {
        item.menu = newMenu ? newMenu->toNSMenu() : nil;
        release(std::exchange(menu, std::move(newMenu)));
    }

private:
    // An action of the menu may cause its own deletion.
    static void release(std::unique_ptr<QMenu> old)
    {
        if (old)
            old.release()->deleteLater();
    }

    NSStatusItem *item = [NSStatusBar.systemStatusBar statusItemWithLength:NSSquareStatusItemLength];
    std::unique_ptr<QMenu> menu;
};

} // namespace

std::unique_ptr<StatusItem> MacStatusBar::createItem()
{
    return std::make_unique<MacStatusItem>();
}
