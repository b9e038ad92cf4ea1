// SPDX-License-Identifier: MIT
#pragma once

#include <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

typedef NS_ENUM(NSInteger, SMAppServiceStatus) {
    SMAppServiceStatusNotRegistered,
    SMAppServiceStatusEnabled,
    SMAppServiceStatusRequiresApproval,
    SMAppServiceStatusNotFound,
};

API_AVAILABLE(macos(13.0))
@interface SMAppService : NSObject
@property(class, readonly) SMAppService *mainAppService;
@property(readonly) SMAppServiceStatus status;
- (BOOL)registerAndReturnError:(NSError *_Nullable *_Nullable)error;
- (BOOL)unregisterAndReturnError:(NSError *_Nullable *_Nullable)error;
@end

#pragma clang assume_nonnull end
