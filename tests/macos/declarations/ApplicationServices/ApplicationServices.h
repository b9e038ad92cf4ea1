// SPDX-License-Identifier: MIT
#pragma once

#include <CoreGraphics/CoreGraphics.h>

extern "C" {
Boolean AXIsProcessTrusted(void) API_AVAILABLE(macos(10.4));
}
