// SPDX-License-Identifier: MIT
#pragma once

#include <CoreGraphics/CoreGraphics.h>

#pragma clang assume_nonnull begin

extern "C" {
typedef struct CGImageSource *CGImageSourceRef;

extern const CFStringRef kCGImagePropertyPixelWidth API_AVAILABLE(macos(10.4));
extern const CFStringRef kCGImagePropertyPixelHeight API_AVAILABLE(macos(10.4));

CGImageSourceRef _Nullable CGImageSourceCreateWithURL(CFURLRef url, CFDictionaryRef _Nullable options)
    API_AVAILABLE(macos(10.4));
CFDictionaryRef _Nullable CGImageSourceCopyPropertiesAtIndex(CGImageSourceRef source, size_t index,
                                                             CFDictionaryRef _Nullable options)
    API_AVAILABLE(macos(10.4));
}

#pragma clang assume_nonnull end
