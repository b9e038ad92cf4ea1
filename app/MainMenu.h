// SPDX-License-Identifier: MIT
#pragma once

#include <QMenu>

#include <memory>

// The application's main menu: an Edit menu and nothing else. Its items have no fixed target. Each goes to the view
// with the focus or the nearest view around it that implements the action.
std::unique_ptr<QMenu> buildMainMenu();
