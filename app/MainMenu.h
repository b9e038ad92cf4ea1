// SPDX-License-Identifier: MIT
#pragma once

#include <QMenu>

#include <memory>

// The application's main menu: an Edit menu and nothing else. Its items have no target; each goes to the view with
// the focus, or the first around it that answers to the action.
std::unique_ptr<QMenu> buildMainMenu();
