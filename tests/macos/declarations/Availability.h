// SPDX-License-Identifier: MIT
#pragma once

#include <os/availability.h>

#define __MAC_10_6 1060
#define __MAC_13_0 130000
#define __MAC_OS_X_VERSION_MIN_REQUIRED __ENVIRONMENT_MAC_OS_X_VERSION_MIN_REQUIRED__
#define __MAC_OS_X_VERSION_MAX_ALLOWED __MAC_13_0
