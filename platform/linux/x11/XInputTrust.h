// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AccessibilityTrust.h"

#include <memory>

class XcbConnection;

// Every X client may see the mouse, if the server has XInput 2.1 and XFixes. There is no page of settings that could
// grant it.
class XInputTrust : public AccessibilityTrust {
public:
    // Never trusted without an X server (null).
    explicit XInputTrust(const std::shared_ptr<XcbConnection> &xcb);

    bool isProcessTrusted() const override { return trusted; }
    void openAccessibilitySettings() override {}

private:
    bool trusted;
};
