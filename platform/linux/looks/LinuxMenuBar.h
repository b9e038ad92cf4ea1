// SPDX-License-Identifier: MIT
#pragma once

#include "platform/MenuBar.h"

// An X11 desktop shows menus inside the windows of a program, and a window of Parklet has room for none: its views
// answer to the keys of the menu themselves. A QMenuBar that is never shown would cost a fifth of the start all the
// same, as its arrow makes Qt load every image plugin.
class LinuxMenuBar : public MenuBar {
public:
    void setMainMenu(std::unique_ptr<QMenu> menu) override { mainMenu = std::move(menu); }

private:
    std::unique_ptr<QMenu> mainMenu;
};
