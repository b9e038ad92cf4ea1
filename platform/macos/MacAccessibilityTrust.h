// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AccessibilityTrust.h"

// The permission that the user grants under Privacy & Security, Accessibility.
class MacAccessibilityTrust : public AccessibilityTrust {
public:
    bool isProcessTrusted() const override;
    void openAccessibilitySettings() override;
};
