// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AccessibilityTrust.h"

#include <memory>

class XcbConnection;

// An X server lets every client follow the mouse, provided that it has XInput 2.1 and XFixes. No page of settings
// grants what it lacks.
class XInputTrust : public AccessibilityTrust {
public:
    // Never trusted without an X server (null).
    explicit XInputTrust(const std::shared_ptr<XcbConnection> &xcb);

    bool isProcessTrusted() const override { return trusted; }
    void openAccessibilitySettings() override {}

private:
    bool trusted;
};
