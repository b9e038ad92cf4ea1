// SPDX-License-Identifier: MIT
#pragma once

#include <CoreGraphics/CoreGraphics.h>

extern "C" {
extern CFStringRef _Nonnull kAXTrustedCheckOptionPrompt API_AVAILABLE(macos(10.9));
Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef _Nullable options) API_AVAILABLE(macos(10.9));
Boolean AXIsProcessTrusted(void) API_AVAILABLE(macos(10.4));
}
