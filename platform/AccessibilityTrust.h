// SPDX-License-Identifier: MIT
#pragma once

// Whether this process may follow the mouse in other applications, and where the user can grant it.
class AccessibilityTrust {
public:
    virtual ~AccessibilityTrust() = default;

    virtual bool isProcessTrusted() const = 0;

    // Opens the page of the system's settings where the permission is granted; nothing where there is none.
    virtual void openAccessibilitySettings() = 0;
};
