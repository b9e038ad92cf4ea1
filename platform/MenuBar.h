// SPDX-License-Identifier: MIT
#pragma once

#include <QMenu>

#include <memory>

// The desktop's place for the menus of the active program, such as the top of the screen on a Mac.
class MenuBar {
public:
    virtual ~MenuBar() = default;

    // Shows each submenu of `menu` as a title of the bar while the program is active. A desktop without such a place
    // shows nothing. An item with the name of an action as object name, such as "copy:", acts on the view with the
    // focus, even on one of the desktop's own.
    virtual void setMainMenu(std::unique_ptr<QMenu> menu) = 0;
};
