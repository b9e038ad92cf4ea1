// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Alerts.h"

// Alerts of AppKit (NSAlert). Qt turns its message boxes into NSAlerts too, but loses parts of them.
class MacAlerts : public Alerts {
public:
    AlertAnswer runModal(const Alert &alert) override;
};
