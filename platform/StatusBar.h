// SPDX-License-Identifier: MIT
#pragma once

#include <QMenu>
#include <QString>

#include <memory>

// An item in the system's status bar (tray). Destroying it removes it.
class StatusItem {
public:
    virtual ~StatusItem() = default;

    // The symbol to show and how a screen reader names it.
    virtual void setSymbol(const QString &name, const QString &accessibilityDescription) = 0;

    // The menu that a click opens, replacing the previous one.
    virtual void setMenu(std::unique_ptr<QMenu> menu) = 0;
};

class StatusBar {
public:
    virtual ~StatusBar() = default;

    // A new item. Where the session has no status bar yet, it appears when one comes.
    virtual std::unique_ptr<StatusItem> createItem() = 0;
};
