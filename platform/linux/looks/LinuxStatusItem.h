// SPDX-License-Identifier: MIT
#pragma once

#include "platform/StatusBar.h"
#include "platform/linux/looks/TrayWatch.h"

#include <QIcon>
#include <QObject>
#include <QSystemTrayIcon>

class SystemAppearance;

// Turns the second press of a double click into a press like the first: Qt's tray window opens no menu for it, and does
// not even report one of the right button.
class SingleClicks : public QObject {
public:
    bool eventFilter(QObject *watched, QEvent *event) override;
};

// A tray icon that comes once there is a tray, and comes again with a tray that was restarted.
class LinuxStatusItem : public StatusItem {
public:
    // `xcb` is null where there is no X server.
    LinuxStatusItem(std::shared_ptr<XcbConnection> xcb, const SystemAppearance &systemAppearance);
    ~LinuxStatusItem() override;

    void setSymbol(const QString &name, const QString &accessibilityDescription) override;
    void setMenu(std::unique_ptr<QMenu> newMenu) override;

private:
    void showWhenPossible();
    void toggleMenu();

    const SystemAppearance &appearance;
    QIcon icon;
    QString description;
    std::unique_ptr<QMenu> menu;
    SingleClicks singleClicks;
    std::unique_ptr<QSystemTrayIcon> tray; // once there is a tray and a symbol
    bool trayIsThere = false;
    TrayWatch watch;
};
