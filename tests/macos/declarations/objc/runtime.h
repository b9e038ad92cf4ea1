// SPDX-License-Identifier: MIT
#pragma once

#include <objc/objc.h>
#include <os/availability.h>

extern "C" {
typedef struct objc_method *Method;

Method _Nullable class_getInstanceMethod(Class _Nullable cls, SEL _Nonnull name) API_AVAILABLE(macos(10.0));
Method _Nullable class_getClassMethod(Class _Nullable cls, SEL _Nonnull name) API_AVAILABLE(macos(10.0));
Class _Nullable object_getClass(id _Nullable object) API_AVAILABLE(macos(10.0));
IMP _Nonnull method_getImplementation(Method _Nonnull method) API_AVAILABLE(macos(10.5));
IMP _Nonnull method_setImplementation(Method _Nonnull method, IMP _Nonnull implementation) API_AVAILABLE(macos(10.5));
IMP _Nonnull imp_implementationWithBlock(id _Nonnull block) API_AVAILABLE(macos(10.7));
BOOL imp_removeBlock(IMP _Nonnull implementation) API_AVAILABLE(macos(10.7));
}
