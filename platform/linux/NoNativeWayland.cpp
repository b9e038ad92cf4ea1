// SPDX-License-Identifier: MIT
// Used in a build without the packages that native panels need.
#include "platform/linux/NativeWayland.h"

bool offersNativeWayland()
{
    return false;
}

void prepareNativeWayland() {}

bool addNativeWayland(Platform &, const std::shared_ptr<FileHelpers> &)
{
    return false;
}
