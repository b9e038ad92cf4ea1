// SPDX-License-Identifier: MIT
#pragma once

// The permission to see mouse events of other applications. The Mac calls it accessibility trust: the user grants it in
// the system's settings.
class AccessibilityTrust {
public:
    virtual ~AccessibilityTrust() = default;

    virtual bool isProcessTrusted() const = 0;

    // Opens the page of the system's settings that grants the permission. Does nothing where there is none.
    virtual void openAccessibilitySettings() = 0;
};
