// SPDX-License-Identifier: MIT
#pragma once

#include_next <errno.h>

// A Mac's C library keeps it elsewhere.
#undef errno
#define errno (*__error())
extern "C" int *__error();
