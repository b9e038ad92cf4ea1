// SPDX-License-Identifier: MIT
#include "platform/macos/MacHover.h"

#include <functional>

#import <AppKit/AppKit.h>

namespace {

// A copy is called: the panel may go meanwhile, and its follower with it.
void callWhileInactive(std::function<void()> handler)
{
    if (handler && !NSApplication.sharedApplication.active)
        handler();
}

} // namespace

// Receives what a tracking area sees, while this application is not the active one.
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

// The last of these keeps the area as large as its view.
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
        // Somebody else may still hold it.
        [follower stop];
    }

    __weak NSView *view;
    ParkletPointerFollower *follower; // which the area does not retain
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
