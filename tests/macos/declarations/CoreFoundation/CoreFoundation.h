// SPDX-License-Identifier: MIT
#pragma once

#include <objc/objc.h>
#include <os/availability.h>

#include <stddef.h>
#include <stdint.h>

#pragma clang assume_nonnull begin

extern "C" {
typedef unsigned char Boolean;
typedef signed long CFIndex;
typedef unsigned long CFTypeID;
typedef double CFTimeInterval;
typedef double CGFloat;

typedef const void *CFTypeRef;
typedef const struct __CFAllocator *CFAllocatorRef;
typedef const struct __CFArray *CFArrayRef;
typedef const struct __CFDictionary *CFDictionaryRef;
typedef const struct __CFString *CFStringRef;
typedef const struct __CFURL *CFURLRef;
typedef struct __CFMachPort *CFMachPortRef;
typedef struct __CFRunLoop *CFRunLoopRef;
typedef struct __CFRunLoopSource *CFRunLoopSourceRef;
typedef CFStringRef CFRunLoopMode;

extern const CFAllocatorRef kCFAllocatorDefault;
extern const CFRunLoopMode kCFRunLoopDefaultMode;
extern const CFRunLoopMode kCFRunLoopCommonModes;

void CFRelease(CFTypeRef object);
CFTypeID CFGetTypeID(CFTypeRef object);
CFTypeID CFBooleanGetTypeID(void);

extern const CFStringRef kCFPreferencesCurrentApplication;
Boolean CFPreferencesAppSynchronize(CFStringRef applicationID);

CFRunLoopRef CFRunLoopGetMain(void) API_AVAILABLE(macos(10.0));
void CFRunLoopAddSource(CFRunLoopRef loop, CFRunLoopSourceRef _Nullable source, CFRunLoopMode _Nullable mode);
void CFRunLoopRemoveSource(CFRunLoopRef loop, CFRunLoopSourceRef _Nullable source, CFRunLoopMode _Nullable mode);
CFRunLoopSourceRef _Null_unspecified CFMachPortCreateRunLoopSource(CFAllocatorRef _Nullable allocator,
                                                                   CFMachPortRef _Null_unspecified port, CFIndex order);
void CFMachPortInvalidate(CFMachPortRef _Null_unspecified port);

struct CGPoint {
    CGFloat x;
    CGFloat y;
};
typedef struct CGPoint CGPoint;
struct CGSize {
    CGFloat width;
    CGFloat height;
};
typedef struct CGSize CGSize;
struct CGRect {
    CGPoint origin;
    CGSize size;
};
typedef struct CGRect CGRect;
}

#pragma clang assume_nonnull end
