// SPDX-License-Identifier: MIT
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CoreGraphics.h>
#include <CoreServices/CoreServices.h>

#pragma clang assume_nonnull begin

typedef long NSInteger;
typedef unsigned long NSUInteger;
typedef CGPoint NSPoint;
typedef CGSize NSSize;
typedef CGRect NSRect;
typedef double NSTimeInterval;
typedef struct NSEdgeInsets {
    CGFloat top;
    CGFloat left;
    CGFloat bottom;
    CGFloat right;
} NSEdgeInsets;
extern "C" const NSPoint NSZeroPoint;
extern "C" const NSRect NSZeroRect;

@class NSDictionary<KeyType, ObjectType>, NSError, NSString;

@protocol NSObject
- (BOOL)isEqual:(null_unspecified id)object;
- (BOOL)isKindOfClass:(Class)aClass;
@end

@protocol NSCopying
@end
@protocol NSSecureCoding
@end

typedef struct {
    unsigned long state;
    id __unsafe_unretained _Nullable *_Nullable itemsPtr;
    unsigned long *_Nullable mutationsPtr;
    unsigned long extra[5];
} NSFastEnumerationState;

@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState *)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)length;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject>
+ (instancetype)alloc;
- (instancetype)init;
+ (Class)class;
@end

extern "C" SEL NSSelectorFromString(NSString *aSelectorName);
extern "C" NSString *NSStringFromSelector(SEL aSelector);

typedef NSString *NSNotificationName;
typedef NSString *NSFileAttributeKey;

@interface NSString : NSObject <NSCopying, NSSecureCoding>
@property(readonly) NSUInteger length;
- (BOOL)isEqualToString:(NSString *)aString;
@property(readonly, copy) NSString *lastPathComponent;
@property(readonly, copy) NSString *stringByDeletingPathExtension;
@end

@interface NSData : NSObject <NSCopying, NSSecureCoding>
@end

@interface NSDate : NSObject <NSCopying, NSSecureCoding>
@end

@interface NSNumber : NSObject <NSCopying, NSSecureCoding>
+ (NSNumber *)numberWithBool:(BOOL)value;
+ (NSNumber *)numberWithDouble:(double)value;
+ (NSNumber *)numberWithLongLong:(long long)value;
@property(readonly) BOOL boolValue;
@property(readonly) int intValue;
@property(readonly) double doubleValue;
@end

@interface NSArray<__covariant ObjectType> : NSObject <NSCopying, NSSecureCoding, NSFastEnumeration>
+ (instancetype)arrayWithObjects:(const ObjectType _Nonnull[_Nullable])objects count:(NSUInteger)count;
@property(readonly) NSUInteger count;
- (ObjectType)objectAtIndexedSubscript:(NSUInteger)idx API_AVAILABLE(macos(10.8));
- (NSUInteger)indexOfObject:(ObjectType)anObject;
@property(nullable, nonatomic, readonly) ObjectType firstObject API_AVAILABLE(macos(10.6));
@end

@interface NSMutableArray<ObjectType> : NSArray <ObjectType>
+ (instancetype)array;
- (void)addObject:(ObjectType)anObject;
@end

@interface NSDictionary<__covariant KeyType, __covariant ObjectType> : NSObject <NSCopying, NSSecureCoding>
+ (instancetype)dictionaryWithObjects:(const ObjectType _Nonnull[_Nullable])objects
                              forKeys:(const KeyType<NSCopying> _Nonnull[_Nullable])keys
                                count:(NSUInteger)count;
- (nullable ObjectType)objectForKeyedSubscript:(KeyType)key API_AVAILABLE(macos(10.8));
@end

@interface NSError : NSObject <NSCopying, NSSecureCoding>
@end

@interface NSURL : NSObject <NSCopying, NSSecureCoding>
+ (nullable instancetype)URLWithString:(NSString *)URLString;
@property(nullable, readonly, copy) NSString *path;
@property(readonly, getter=isFileURL) BOOL fileURL;
@property(nullable, readonly, copy) NSURL *filePathURL API_AVAILABLE(macos(10.6));
- (nullable NSURL *)fileReferenceURL API_AVAILABLE(macos(10.6));
@end

@interface NSBundle : NSObject
+ (nullable instancetype)bundleWithURL:(NSURL *)url API_AVAILABLE(macos(10.6));
@property(nullable, readonly, copy) NSString *bundleIdentifier;
@end

@interface NSUserDefaults : NSObject
@property(class, readonly, strong) NSUserDefaults *standardUserDefaults;
- (nullable id)objectForKey:(NSString *)defaultName;
- (void)setObject:(nullable id)value forKey:(NSString *)defaultName;
- (void)removeObjectForKey:(NSString *)defaultName;
- (nullable NSArray *)arrayForKey:(NSString *)defaultName;
- (nullable NSData *)dataForKey:(NSString *)defaultName;
- (NSInteger)integerForKey:(NSString *)defaultName;
- (double)doubleForKey:(NSString *)defaultName;
- (BOOL)boolForKey:(NSString *)defaultName;
- (void)registerDefaults:(NSDictionary<NSString *, id> *)registrationDictionary;
@end

@interface NSKeyedArchiver : NSObject
+ (nullable NSData *)archivedDataWithRootObject:(id)object
                          requiringSecureCoding:(BOOL)requiresSecureCoding
                                          error:(NSError *_Nullable *_Nullable)error API_AVAILABLE(macos(10.13));
@end

@interface NSKeyedUnarchiver : NSObject
+ (nullable id)unarchivedObjectOfClass:(Class)cls
                              fromData:(NSData *)data
                                 error:(NSError *_Nullable *_Nullable)error API_AVAILABLE(macos(10.13));
@end

extern "C" NSFileAttributeKey const NSFileCreationDate;
@interface NSFileManager : NSObject
@property(class, readonly, strong) NSFileManager *defaultManager;
- (nullable NSDictionary<NSFileAttributeKey, id> *)attributesOfItemAtPath:(NSString *)path
                                                                    error:(NSError *_Nullable *_Nullable)error
    API_AVAILABLE(macos(10.5));
@end

@interface NSProcessInfo : NSObject
@property(class, readonly, strong) NSProcessInfo *processInfo;
@property(readonly) NSTimeInterval systemUptime API_AVAILABLE(macos(10.6));
@end

@interface NSOperationQueue : NSObject
@property(class, readonly, strong) NSOperationQueue *mainQueue API_AVAILABLE(macos(10.6));
@end

@interface NSNotification : NSObject
@end

@interface NSNotificationCenter : NSObject
@property(class, readonly, strong) NSNotificationCenter *defaultCenter;
- (id<NSObject>)addObserverForName:(nullable NSNotificationName)name
                            object:(nullable id)object
                             queue:(nullable NSOperationQueue *)queue
                        usingBlock:(void (^)(NSNotification *notification))block API_AVAILABLE(macos(10.6));
- (void)removeObserver:(id)observer;
@end

@interface NSDistributedNotificationCenter : NSNotificationCenter
+ (NSDistributedNotificationCenter *)defaultCenter;
- (void)postNotificationName:(NSNotificationName)name
                      object:(nullable NSString *)object
                    userInfo:(nullable NSDictionary *)userInfo
          deliverImmediately:(BOOL)deliverImmediately;
@end

@interface NSAppleEventDescriptor : NSObject
@end

@interface NSAppleEventManager : NSObject
+ (NSAppleEventManager *)sharedAppleEventManager;
- (void)setEventHandler:(id)handler
            andSelector:(SEL)handleEventSelector
          forEventClass:(AEEventClass)eventClass
             andEventID:(AEEventID)eventID;
- (void)removeEventHandlerForEventClass:(AEEventClass)eventClass andEventID:(AEEventID)eventID;
@end

inline id _Nullable CFBridgingRelease(CFTypeRef __attribute__((cf_consumed)) _Nullable object)
{
    return (__bridge_transfer id)object;
}

#pragma clang assume_nonnull end
