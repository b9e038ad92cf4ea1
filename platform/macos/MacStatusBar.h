// SPDX-License-Identifier: MIT
#pragma once

#include "platform/StatusBar.h"

// The system's status bar, at the right of the menu bar.
class MacStatusBar : public StatusBar {
public:
    std::unique_ptr<StatusItem> createItem() override;
};
