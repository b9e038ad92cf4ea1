// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ActivationPolicy.h"

// The application's activation policy: with a place in the Dock, or without.
class MacActivationPolicy : public ActivationPolicy {
public:
    void set(Policy policy) override;
    void activate(QWidget &window) override;
};
