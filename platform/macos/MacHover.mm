// SPDX-License-Identifier: MIT
#include "platform/macos/MacHover.h"

#include <QCoreApplication>
#include <QCursor>
#include <QEnterEvent>
#include <QGuiApplication>
#include <QWindow>

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

void sendEnter(QWidget &window)
{
    const QPointF global = QCursor::pos();
    const QPointF local = window.mapFromGlobal(global);
    QEnterEvent event(local, local, global);
    QCoreApplication::sendEvent(window.windowHandle(), &event);
}

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
    : window(&hovered)
{
}

MacHover::~MacHover() = default;

void MacHover::follow(NSView *view)
{
    area.reset();
    isInside = false;
    area = std::make_unique<Area>(view, [[ParkletPointerFollower alloc] initWithMoved:[this] { move(); }
                                            left:[this] { leave(); }]);
}

// The window's own handling of these finds the view under the pointer, sends it and the one before what they need to
// know, and wakes tool tips.
void MacHover::move()
{
    // Whoever hears of the first event may let go of the panel, and of this with it.
    const QPointer<QWidget> hovered = window;
    if (!hovered || !hovered->windowHandle())
        return;
    if (!isInside) {
        isInside = true;
        sendEnter(*hovered);
    }
    if (!hovered || !hovered->windowHandle())
        return;
    const QPointF global = QCursor::pos();
    const QPointF local = hovered->mapFromGlobal(global);
    QMouseEvent event(QEvent::MouseMove, local, local, global, Qt::NoButton, Qt::NoButton,
                      QGuiApplication::queryKeyboardModifiers());
    QCoreApplication::sendEvent(hovered->windowHandle(), &event);
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
