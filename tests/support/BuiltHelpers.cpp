// SPDX-License-Identifier: MIT
#include "tests/support/BuiltHelpers.h"

#ifdef PARKLET_HELPERS

#include "platform/linux/helpers/HelperProcess.h"

void useBuiltHelpers()
{
    HelperProcess::lookIn(PARKLET_HELPERS);
}

#else

void useBuiltHelpers() {}

#endif
