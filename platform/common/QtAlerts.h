// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Alerts.h"

class ActivationPolicy;
class SystemAppearance;

// Alerts as Qt message boxes.
class QtAlerts : public Alerts {
public:
    QtAlerts(const SystemAppearance &appearance, ActivationPolicy &activationPolicy);

    AlertAnswer runModal(const Alert &alert) override;

private:
    const SystemAppearance &appearance;
    ActivationPolicy &activationPolicy;
};
