// SPDX-License-Identifier: MIT
#pragma once

#include_next <stdio.h>

// A Mac's C library has other names for these.
#undef stdin
#undef stdout
#undef stderr
#define stdin __stdinp
#define stdout __stdoutp
#define stderr __stderrp
extern "C" {
extern FILE *__stdinp;
extern FILE *__stdoutp;
extern FILE *__stderrp;
}
