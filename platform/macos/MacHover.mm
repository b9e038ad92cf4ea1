// SPDX-License-Identifier: MIT
#include "platform/macos/MacHover.h"

#include <QCoreApplication>
#include <QCursor>
#include <QEnterEvent>
#include <QGuiApplication>
#include <QWindow>

#include <functional>

#import <AppKit/AppKit.h>

// Receives what a tracking area sees, while this application is not the active one.
@interface ParkletPointerFollower : NSObject
- (instancetype)initWithMoved:(std::function<void()>)moved left:(std::function<void()>)left;
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

- (void)mouseEntered:(NSEvent *)__unused event
{
    if (!NSApplication.sharedApplication.active)
        onMove();
}

- (void)mouseMoved:(NSEvent *)__unused event
{
    if (!NSApplication.sharedApplication.active)
        onMove();
}

- (void)mouseExited:(NSEvent *)__unused event
{
    if (!NSApplication.sharedApplication.active)
        onLeave();
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
    ~Area() { [view removeTrackingArea:area]; }

    __weak NSView *view;
    ParkletPointerFollower *follower; // which the area does not retain
    NSTrackingArea *area;
};

MacHover::MacHover(QWidget &hovered)
    : window(&hovered)
{
}

MacHover::~MacHover() = default;

void MacHover::follow(NSView *view)
{
    area.reset();
    area = std::make_unique<Area>(view, [[ParkletPointerFollower alloc] initWithMoved:[this] { move(); }
                                            left:[this] { leave(); }]);
}

void MacHover::enter()
{
    const QPointF global = QCursor::pos();
    const QPointF local = window->mapFromGlobal(global);
    QEnterEvent event(local, local, global);
    isInside = true;
    QCoreApplication::sendEvent(window->windowHandle(), &event);
}

// The window's own handling of these finds the view under the pointer, sends it and the one before what they need to
// know, and wakes tool tips.
void MacHover::move()
{
    if (!window || !window->windowHandle())
        return;
    if (!isInside)
        enter();
    if (!window || !window->windowHandle())
        return;
    const QPointF global = QCursor::pos();
    const QPointF local = window->mapFromGlobal(global);
    QMouseEvent event(QEvent::MouseMove, local, local, global, Qt::NoButton, Qt::NoButton,
                      QGuiApplication::queryKeyboardModifiers());
    QCoreApplication::sendEvent(window->windowHandle(), &event);
}

void MacHover::leave()
{
    if (!isInside)
        return;
    isInside = false;
    if (!window || !window->windowHandle())
        return;
    QEvent event(QEvent::Leave);
    QCoreApplication::sendEvent(window->windowHandle(), &event);
}
