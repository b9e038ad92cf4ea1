// SPDX-License-Identifier: MIT
#pragma once

#include <QMenu>

#include <memory>

class AppDelegate;

// The menu of the status item: what each entry says, and which slot of the delegate it calls.
std::unique_ptr<QMenu> makeStatusMenu(AppDelegate &delegate, bool launchesAtLogin);
