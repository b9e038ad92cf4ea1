// SPDX-License-Identifier: MIT
#pragma once

#include "platform/LoginItem.h"

// The main application as a login item of the system.
class MacLoginItem : public LoginItem {
public:
    bool isEnabled() const override;
    bool enable() override;
    bool disable() override;
};
