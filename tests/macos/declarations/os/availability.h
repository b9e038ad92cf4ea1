// SPDX-License-Identifier: MIT
#pragma once

// The version that a declaration came with, and the one from which it is not to be used any more, as the compiler
// knows them.
#define PARKLET_INTRODUCED_macos(version) macos, introduced = version
#define PARKLET_DEPRECATED_macos(first, last) macos, introduced = first, deprecated = last
#define API_AVAILABLE(platform) __attribute__((availability(PARKLET_INTRODUCED_##platform)))
#define API_DEPRECATED(text, platform) __attribute__((availability(PARKLET_DEPRECATED_##platform, message = text)))
