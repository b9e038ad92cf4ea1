// SPDX-License-Identifier: MIT
#pragma once

#include <QMenu>
#include <QString>

#include <memory>

// An item in the system's status bar (tray). Destroying it removes it.
class StatusItem {
public:
    virtual ~StatusItem() = default;

    // Sets the symbol, and its name for a screen reader.
    virtual void setSymbol(const QString &name, const QString &accessibilityDescription) = 0;

    // Sets the menu that a click opens. It replaces the previous one.
    virtual void setMenu(std::unique_ptr<QMenu> menu) = 0;
};

class StatusBar {
public:
    virtual ~StatusBar() = default;

    // Makes an item. If the session has no status bar yet, the item appears when one starts.
    virtual std::unique_ptr<StatusItem> createItem() = 0;
};
