// SPDX-License-Identifier: MIT
#include "platform/macos/MacMenuBar.h"

#include "app/MainMenu.h"
#include "platform/macos/MacConversions.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QTest>

#import <AppKit/AppKit.h>

// The program's main menu as the system has it.
class MacMenuBarTest : public QObject {
    Q_OBJECT

private slots:
    void init() { bar.setMainMenu(buildMainMenu()); }
    void the_bar_holds_the_edit_menu_and_nothing_else();
    void its_items_go_to_the_first_responder_by_their_keys_and_actions();

private:
    MacMenuBar bar;
};

void MacMenuBarTest::the_bar_holds_the_edit_menu_and_nothing_else()
{
    NSMenu *menu = NSApplication.sharedApplication.mainMenu;
    QCOMPARE(menu.numberOfItems, NSInteger{1});
    NSMenuItem *edit = [menu itemAtIndex:0];
    QCOMPARE(fromNSString(edit.title), QStringLiteral("Edit"));
    QCOMPARE(fromNSString(edit.keyEquivalent), QString());
    QVERIFY(edit.submenu);
    QCOMPARE(fromNSString(edit.submenu.title), QStringLiteral("Edit"));
}

void MacMenuBarTest::its_items_go_to_the_first_responder_by_their_keys_and_actions()
{
    NSMenu *edit = [NSApplication.sharedApplication.mainMenu itemAtIndex:0].submenu;
    QStringList items;
    // The system may append some of its own.
    QVERIFY(edit.numberOfItems >= 7);
    for (NSInteger i = 0; i < 7; ++i) {
        NSMenuItem *item = [edit itemAtIndex:i];
        QVERIFY(!item.target);
        items.append(item.separatorItem ? QStringLiteral("-")
                                        : fromNSString(item.title) + QLatin1Char(' ') +
                                              fromNSString(NSStringFromSelector(item.action)) + QLatin1Char(' ') +
                                              fromNSString(item.keyEquivalent));
    }
    const QStringList expected = {QStringLiteral("Undo undo z"),
                                  QStringLiteral("Redo redo z"),
                                  QStringLiteral("-"),
                                  QStringLiteral("Cut cut: x"),
                                  QStringLiteral("Copy copy: c"),
                                  QStringLiteral("Paste paste: v"),
                                  QStringLiteral("Select All selectAll: a")};
    QCOMPARE(items, expected);
}

PARKLET_TEST(MacMenuBarTest)

#include "MacMenuBarTest.moc"
