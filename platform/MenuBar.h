// SPDX-License-Identifier: MIT
#pragma once

#include <QMenu>

#include <memory>

// The place that the desktop itself has for the menus of the program in front, such as the top of the screen.
class MenuBar {
public:
    virtual ~MenuBar() = default;

    // Shows each submenu of `menu` as a title of the bar while the program is in front. A desktop without such a place
    // shows nothing. An item whose object name is that of an action, such as "copy:", goes to whatever view has the
    // keyboard, the desktop's own ones too.
    virtual void setMainMenu(std::unique_ptr<QMenu> menu) = 0;
};
