// SPDX-License-Identifier: MIT
#include "platform/macos/MacHover.h"

#include <functional>

#import <AppKit/AppKit.h>

namespace {

// Calls a copy, because the handler may delete the panel and its follower.
void callWhileInactive(std::function<void()> handler)
{
    if (handler && !NSApplication.sharedApplication.active)
        handler();
}

} // namespace

// Receives the events of a tracking area while this application is not active.
@interface ParkletPointerFollower : NSObject
- (instancetype)initWithMoved:(std::function<void()>)moved left:(std::function<void()>)left;
- (void)stop;
@end

@implementation ParkletPointerFollower {
    std::function<void()> onMove;
    std::function<void()> onLeave;
}

- (instancetype)initWithMoved:(std::function<void()>)moved left:(std::function<void()>)left
{
    self = [super init];
    if (self) {
        onMove = std::move(moved);
        onLeave = std::move(left);
    }
    return self;
}

- (void)stop
{
    onMove = nullptr;
    onLeave = nullptr;
}

- (void)mouseEntered:(NSEvent *)__unused event
{
    callWhileInactive(onMove);
}

- (void)mouseMoved:(NSEvent *)__unused event
{
    callWhileInactive(onMove);
}

- (void)mouseExited:(NSEvent *)__unused event
{
    callWhileInactive(onLeave);
}
@end

namespace {

// The last option keeps the area as large as its view.
constexpr NSTrackingAreaOptions kOptions =
    NSTrackingMouseEnteredAndExited | NSTrackingMouseMoved | NSTrackingActiveAlways | NSTrackingInVisibleRect;
static_assert(kOptions == 0x283);

} // namespace

struct MacHover::Area {
    Area(NSView *trackedView, ParkletPointerFollower *owner)
        : view(trackedView)
        , follower(owner)
        , area([[NSTrackingArea alloc] initWithRect:NSZeroRect options:kOptions owner:owner userInfo:nil])
    {
        [view addTrackingArea:area];
    }
    Q_DISABLE_COPY_MOVE(Area)
    ~Area()
    {
        [view removeTrackingArea:area];
        // Another object may still have a reference.
        [follower stop];
    }

    __weak NSView *view;
    ParkletPointerFollower *follower; // the area does not retain it
    NSTrackingArea *area;
};

MacHover::MacHover(QWidget &hovered)
    : events(hovered)
{
}

MacHover::~MacHover() = default;

void MacHover::follow(NSView *view)
{
    area.reset();
    forget();
    area = std::make_unique<Area>(view, [[ParkletPointerFollower alloc] initWithMoved:[this] { events.move(); }
                                            left:[this] { leave(); }]);
}
