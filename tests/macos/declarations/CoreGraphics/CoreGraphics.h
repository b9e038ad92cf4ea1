// SPDX-License-Identifier: MIT
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#pragma clang assume_nonnull begin

extern "C" {
typedef struct CGColorSpace *CGColorSpaceRef;
typedef struct CGContext *CGContextRef;
typedef struct CGImage *CGImageRef;

inline CGRect CGRectMake(CGFloat x, CGFloat y, CGFloat width, CGFloat height)
{
    return {{x, y}, {width, height}};
}

// Pictures.
enum CGImageAlphaInfo : uint32_t { kCGImageAlphaPremultipliedFirst = 2 };
enum CGImageByteOrderInfo : uint32_t { kCGImageByteOrder32Little = 2 << 12 };
#define kCGBitmapByteOrder32Host kCGImageByteOrder32Little

extern const CFStringRef kCGColorSpaceSRGB API_AVAILABLE(macos(10.5));
CGColorSpaceRef _Nullable CGColorSpaceCreateWithName(CFStringRef _Nullable name) API_AVAILABLE(macos(10.2));
CGContextRef _Nullable CGBitmapContextCreate(void *_Nullable data, size_t width, size_t height, size_t bitsPerComponent,
                                             size_t bytesPerRow, CGColorSpaceRef _Nullable space, uint32_t bitmapInfo)
    API_AVAILABLE(macos(10.0));
void CGContextDrawImage(CGContextRef _Nullable context, CGRect rect, CGImageRef _Nullable image)
    API_AVAILABLE(macos(10.0));
size_t CGImageGetWidth(CGImageRef _Nullable image) API_AVAILABLE(macos(10.0));
size_t CGImageGetHeight(CGImageRef _Nullable image) API_AVAILABLE(macos(10.0));

// Event taps.
typedef struct __CGEvent *CGEventRef;
typedef struct __CGEventTapProxy *CGEventTapProxy;
typedef uint64_t CGEventMask;
typedef uint16_t CGKeyCode;
typedef struct __CGEventSource *CGEventSourceRef;
#define CGEventMaskBit(eventType) ((CGEventMask)1 << (eventType))
typedef NS_ENUM(uint32_t, CGEventType) { kCGEventKeyDown = 10 };
typedef NS_OPTIONS(uint64_t, CGEventFlags) {
    kCGEventFlagMaskShift = 0x20000,
    kCGEventFlagMaskControl = 0x40000,
    kCGEventFlagMaskAlternate = 0x80000,
    kCGEventFlagMaskCommand = 0x100000,
};
typedef NS_ENUM(uint32_t, CGEventField) { kCGKeyboardEventKeycode = 9 };
typedef NS_ENUM(uint32_t, CGEventTapLocation) { kCGHIDEventTap = 0, kCGSessionEventTap = 1 };
typedef NS_ENUM(uint32_t, CGEventTapPlacement) { kCGHeadInsertEventTap = 0, kCGTailAppendEventTap = 1 };
typedef NS_ENUM(uint32_t, CGEventTapOptions) {
    kCGEventTapOptionDefault = 0,
    kCGEventTapOptionListenOnly = 1,
};
typedef CGEventRef _Nullable (*CGEventTapCallBack)(CGEventTapProxy proxy, CGEventType type, CGEventRef event,
                                                   void *_Nullable userInfo);

CFMachPortRef _Nullable CGEventTapCreate(CGEventTapLocation tap, CGEventTapPlacement place, CGEventTapOptions options,
                                         CGEventMask eventsOfInterest, CGEventTapCallBack callback,
                                         void *_Nullable userInfo) API_AVAILABLE(macos(10.4));
void CGEventTapEnable(CFMachPortRef tap, bool enable) API_AVAILABLE(macos(10.4));
int64_t CGEventGetIntegerValueField(CGEventRef _Nullable event, CGEventField field) API_AVAILABLE(macos(10.4));
CGEventRef _Nullable CGEventCreateKeyboardEvent(CGEventSourceRef _Nullable source, CGKeyCode virtualKey, bool keyDown)
    API_AVAILABLE(macos(10.4));
void CGEventSetFlags(CGEventRef _Nullable event, CGEventFlags flags) API_AVAILABLE(macos(10.4));
void CGEventPost(CGEventTapLocation tap, CGEventRef _Nullable event) API_AVAILABLE(macos(10.4));
CGEventFlags CGEventGetFlags(CGEventRef _Nullable event) API_AVAILABLE(macos(10.4));
}

#pragma clang assume_nonnull end
