// SPDX-License-Identifier: MIT
#include "platform/macos/MacLoginItem.h"

#import <ServiceManagement/ServiceManagement.h>

bool MacLoginItem::isEnabled() const
{
    return SMAppService.mainAppService.status == SMAppServiceStatusEnabled;
}

bool MacLoginItem::enable()
{
    return [SMAppService.mainAppService registerAndReturnError:nil];
}

bool MacLoginItem::disable()
{
    return !isEnabled() || [SMAppService.mainAppService unregisterAndReturnError:nil];
}
