// SPDX-License-Identifier: MIT
#include "app/StatusMenu.h"

#include "app/AppDelegate.h"

#include <QAction>
#include <QCoreApplication>

namespace {

struct StatusMenu {
    Q_DECLARE_TR_FUNCTIONS(StatusMenu)
};

} // namespace

std::unique_ptr<QMenu> makeStatusMenu(AppDelegate &delegate, bool launchesAtLogin)
{
    auto menu = std::make_unique<QMenu>();
    menu->addAction(QStringLiteral("Parklet"))->setEnabled(false);
    menu->addSeparator();
    menu->addAction(StatusMenu::tr("Add From Clipboard"), &delegate, &AppDelegate::addFromClipboard);
    menu->addSeparator();
    menu->addAction(StatusMenu::tr("Show Shelf"), &delegate, &AppDelegate::toggleShelf);
    menu->addSeparator();
    menu->addAction(StatusMenu::tr("Preferences…"), &delegate, &AppDelegate::openPreferences)
        ->setShortcut(Qt::CTRL | Qt::Key_Comma);
    menu->addAction(StatusMenu::tr("Check for Updates…"), &delegate, &AppDelegate::checkForUpdates);
    menu->addAction(StatusMenu::tr("More from Orvane"), &delegate, &AppDelegate::openMoreApps);
    menu->addSeparator();
    QAction *launchAtLogin =
        menu->addAction(StatusMenu::tr("Launch at Login"), &delegate, &AppDelegate::toggleLaunchAtLogin);
    launchAtLogin->setCheckable(true);
    launchAtLogin->setChecked(launchesAtLogin);
    menu->addSeparator();
    menu->addAction(StatusMenu::tr("Quit Parklet"), qApp, &QCoreApplication::quit)->setShortcut(Qt::CTRL | Qt::Key_Q);
    return menu;
}

std::unique_ptr<QMenu> makeShelfMenu(AppDelegate &delegate)
{
    auto menu = std::make_unique<QMenu>();
    menu->addAction(StatusMenu::tr("Hide Shelf"), &delegate, &AppDelegate::toggleShelf);
    menu->addSeparator();
    menu->addAction(StatusMenu::tr("Preferences…"), &delegate, &AppDelegate::openPreferences);
    menu->addSeparator();
    menu->addAction(StatusMenu::tr("Quit Parklet"), qApp, &QCoreApplication::quit);
    return menu;
}
