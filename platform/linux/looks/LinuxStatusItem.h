// SPDX-License-Identifier: MIT
#pragma once

#include "platform/StatusBar.h"
#include "platform/linux/looks/TrayWatch.h"

#include <QIcon>
#include <QSystemTrayIcon>

class SystemAppearance;

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

    const SystemAppearance &appearance;
    QIcon icon;
    QString description;
    std::unique_ptr<QMenu> menu;
    std::unique_ptr<QSystemTrayIcon> tray; // once there is a tray and a symbol
    bool trayIsThere = false;
    TrayWatch watch;
};
