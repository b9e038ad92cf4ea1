// SPDX-License-Identifier: MIT
#pragma once

#include <Foundation/Foundation.h>

API_AVAILABLE(macos(10.5))
@interface CALayer : NSObject <NSSecureCoding>
@property CGFloat zPosition;
@property(nullable, copy) NSArray<__kindof CALayer *> *sublayers;
@end
