// SPDX-License-Identifier: MIT
#pragma once

#include "platform/StatusBar.h"
#include "platform/linux/looks/TrayWatch.h"

#include <QIcon>
#include <QObject>
#include <QSystemTrayIcon>

class SystemAppearance;

// Turns the second press of a double click into a single press. Qt's tray window opens no menu for a double click, and
// does not report one of the right button.
class SingleClicks : public QObject {
public:
    bool eventFilter(QObject *watched, QEvent *event) override;
};

// A tray icon that appears once there is a tray, and again after the tray was restarted.
class LinuxStatusItem : public StatusItem {
public:
    // `xcb` is null when there is no X server.
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
    std::unique_ptr<QSystemTrayIcon> tray; // set once there is a tray and a symbol
    bool trayIsThere = false;
    TrayWatch watch;
};
