// SPDX-License-Identifier: MIT
#include "platform/macos/MacSessionInstance.h"

#include <QDir>
#include <QStandardPaths>

#import <AppKit/AppKit.h>
#import <CoreServices/CoreServices.h>

// Receives the Apple event that the system sends when the user opens the running application again.
@interface ParkletReopenHandler : NSObject
- (instancetype)initWithHandler:(std::function<void()>)reopened;
- (void)handleReopenEvent:(NSAppleEventDescriptor *)event withReplyEvent:(NSAppleEventDescriptor *)reply;
@end

@implementation ParkletReopenHandler {
    std::function<void()> handler;
}

- (instancetype)initWithHandler:(std::function<void()>)reopened
{
    self = [super init];
    if (self)
        handler = std::move(reopened);
    return self;
}

- (void)handleReopenEvent:(NSAppleEventDescriptor *)__unused event
           withReplyEvent:(NSAppleEventDescriptor *)__unused reply
{
    handler();
}
@end

namespace {

NSString *const kShowYourself = @"com.orvane.Parklet.showYourself";

// By value, because the block keeps a copy.
id observe(NSNotificationCenter *center, NSNotificationName name, std::function<void()> notified)
{
    return [center addObserverForName:name
                               object:nil
                                queue:NSOperationQueue.mainQueue
                           usingBlock:^(NSNotification *) {
                               notified();
                           }];
}

// The lock is not in the folder for temporary files, because the system deletes files there that were unused for days.
QString lockPath()
{
    const QString folder =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Parklet");
    QDir().mkpath(folder);
    return folder + QStringLiteral("/session.lock");
}

void install(ParkletReopenHandler *handler)
{
    [NSAppleEventManager.sharedAppleEventManager setEventHandler:handler
                                                     andSelector:@selector(handleReopenEvent:withReplyEvent:)
                                                   forEventClass:kCoreEventClass
                                                      andEventID:kAEReopenApplication];
}

} // namespace

struct MacSessionInstance::Listener {
    explicit Listener(const std::function<void()> &activated)
        : reopenHandler([[ParkletReopenHandler alloc] initWithHandler:activated])
        , distributed(observe(NSDistributedNotificationCenter.defaultCenter, kShowYourself, activated))
    {
        // Install it later, because AppKit installs its own handler of this event until then.
        ParkletReopenHandler *handler = reopenHandler;
        launched = observe(NSNotificationCenter.defaultCenter, NSApplicationDidFinishLaunchingNotification,
                           [handler] { install(handler); });
    }
    Q_DISABLE_COPY_MOVE(Listener)
    ~Listener()
    {
        [NSNotificationCenter.defaultCenter removeObserver:launched];
        [NSDistributedNotificationCenter.defaultCenter removeObserver:distributed];
        [NSAppleEventManager.sharedAppleEventManager removeEventHandlerForEventClass:kCoreEventClass
                                                                          andEventID:kAEReopenApplication];
    }

    ParkletReopenHandler *reopenHandler;
    id distributed;
    id launched;
};

MacSessionInstance::MacSessionInstance()
    : lock(lockPath())
{
}

MacSessionInstance::~MacSessionInstance() = default;

bool MacSessionInstance::claim()
{
    if (!lock.take()) {
        [NSDistributedNotificationCenter.defaultCenter postNotificationName:kShowYourself
                                                                     object:nil
                                                                   userInfo:nil
                                                         deliverImmediately:YES];
        return false;
    }
    listener = std::make_unique<Listener>([this] {
        if (onActivate)
            onActivate();
    });
    return true;
}

std::unique_ptr<SessionInstance> createSessionInstance()
{
    return std::make_unique<MacSessionInstance>();
}
