// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Alerts.h"

// AppKit's own alerts. Qt's message boxes become alerts of AppKit's too, but not all of one does.
class MacAlerts : public Alerts {
public:
    AlertAnswer runModal(const Alert &alert) override;
};
