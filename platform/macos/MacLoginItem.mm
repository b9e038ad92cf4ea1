// SPDX-License-Identifier: MIT
#include "platform/macos/MacLoginItem.h"

#import <ServiceManagement/ServiceManagement.h>

bool MacLoginItem::isEnabled() const
{
    return SMAppService.mainAppService.status == SMAppServiceStatusEnabled;
}

bool MacLoginItem::enable()
{
    if (!isEnabled())
        [SMAppService.mainAppService registerAndReturnError:nil];
    return isEnabled();
}

// A registration that waits for the user's approval also counts.
bool MacLoginItem::disable()
{
    switch (SMAppService.mainAppService.status) {
    case SMAppServiceStatusNotRegistered:
    case SMAppServiceStatusNotFound:
        return true;
    case SMAppServiceStatusEnabled:
    case SMAppServiceStatusRequiresApproval:
        return [SMAppService.mainAppService unregisterAndReturnError:nil];
    }
    return false;
}
