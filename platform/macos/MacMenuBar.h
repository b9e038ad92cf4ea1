// SPDX-License-Identifier: MIT
#pragma once

#include "platform/MenuBar.h"

// The menu bar at the top of the screen. It holds the given menus and no others.
class MacMenuBar : public MenuBar {
public:
    void setMainMenu(std::unique_ptr<QMenu> menu) override;

private:
    std::unique_ptr<QMenu> mainMenu;
};
