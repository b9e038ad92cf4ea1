// SPDX-License-Identifier: MIT
#pragma once

#include <QMenu>

#include <memory>

class AppDelegate;

// Makes the menu of the status item (the icon in the tray): its entries, and the slot of `delegate` that each calls.
std::unique_ptr<QMenu> makeStatusMenu(AppDelegate &delegate, bool launchesAtLogin);

// The menu of a right click on the shelf, for desktops without a tray.
std::unique_ptr<QMenu> makeShelfMenu(AppDelegate &delegate);
