// SPDX-License-Identifier: MIT
#pragma once

#include "platform/MenuBar.h"

// Shows nothing: X11 desktops show menus inside windows, and Parklet's windows have no room for one. The views handle
// the keys of the menu themselves. Even a hidden QMenuBar would cost a fifth of the start, because its arrow makes Qt
// load every image plugin.
class LinuxMenuBar : public MenuBar {
public:
    void setMainMenu(std::unique_ptr<QMenu> menu) override { mainMenu = std::move(menu); }

private:
    std::unique_ptr<QMenu> mainMenu;
};
