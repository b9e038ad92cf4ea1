// SPDX-License-Identifier: MIT
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#pragma clang assume_nonnull begin

extern "C" {
// Apple events.
typedef uint32_t FourCharCode;
typedef FourCharCode AEEventClass;
typedef FourCharCode AEEventID;
enum { kCoreEventClass = 0x61657674, kAEReopenApplication = 0x72617070 }; // 'aevt', 'rapp'

// File-system event streams.
typedef struct __FSEventStream *FSEventStreamRef;
typedef const struct __FSEventStream *ConstFSEventStreamRef;
typedef uint32_t FSEventStreamCreateFlags;
typedef uint32_t FSEventStreamEventFlags;
typedef uint64_t FSEventStreamEventId;
enum : FSEventStreamEventId { kFSEventStreamEventIdSinceNow = 0xFFFFFFFFFFFFFFFFULL };
enum : FSEventStreamCreateFlags {
    kFSEventStreamCreateFlagUseCFTypes = 0x00000001,
    kFSEventStreamCreateFlagFileEvents API_AVAILABLE(macos(10.7)) = 0x00000010,
};
typedef const void *_Nullable (*CFAllocatorRetainCallBack)(const void *_Nullable info);
typedef void (*CFAllocatorReleaseCallBack)(const void *_Nullable info);
typedef CFStringRef _Nonnull (*CFAllocatorCopyDescriptionCallBack)(const void *_Nullable info);
struct FSEventStreamContext {
    CFIndex version;
    void *_Nullable info;
    CFAllocatorRetainCallBack _Nullable retain;
    CFAllocatorReleaseCallBack _Nullable release;
    CFAllocatorCopyDescriptionCallBack _Nullable copyDescription;
};
typedef struct FSEventStreamContext FSEventStreamContext;
typedef void (*FSEventStreamCallback)(ConstFSEventStreamRef stream, void *_Nullable info, size_t count, void *paths,
                                      const FSEventStreamEventFlags *_Nonnull flags,
                                      const FSEventStreamEventId *_Nonnull ids);

FSEventStreamRef _Nullable FSEventStreamCreate(CFAllocatorRef _Nullable allocator, FSEventStreamCallback callback,
                                               FSEventStreamContext *_Nullable context, CFArrayRef pathsToWatch,
                                               FSEventStreamEventId sinceWhen, CFTimeInterval latency,
                                               FSEventStreamCreateFlags flags) API_AVAILABLE(macos(10.5));
void FSEventStreamScheduleWithRunLoop(FSEventStreamRef stream, CFRunLoopRef loop, CFStringRef mode)
    API_DEPRECATED("Use FSEventStreamSetDispatchQueue instead.", macos(10.5, 13.0));
Boolean FSEventStreamStart(FSEventStreamRef stream) API_AVAILABLE(macos(10.5));
void FSEventStreamStop(FSEventStreamRef stream) API_AVAILABLE(macos(10.5));
void FSEventStreamInvalidate(FSEventStreamRef stream) API_AVAILABLE(macos(10.5));
void FSEventStreamRelease(FSEventStreamRef stream) API_AVAILABLE(macos(10.5));
}

#pragma clang assume_nonnull end
