// SPDX-License-Identifier: MIT
#pragma once

#include <Foundation/Foundation.h>

@interface CALayer : NSObject
@property CGFloat cornerRadius API_AVAILABLE(macos(10.6));
@property BOOL masksToBounds API_AVAILABLE(macos(10.5));
@end
