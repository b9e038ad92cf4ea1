// SPDX-License-Identifier: MIT
#include "platform/macos/MacDragSessions.h"

#include "platform/OwnDrag.h"
#include "platform/common/DragPicture.h"
#include "platform/common/Flipped.h"
#include "platform/macos/MacConversions.h"
#include "platform/macos/MacDragPasteboard.h"

#include <QWidget>

#include <utility>

#import <AppKit/AppKit.h>

using SessionEnded = std::function<void(NSPoint point, NSDragOperation operation)>;

// Offers one operation, inside and outside this application, and reports how its session has ended.
@interface ParkletDragSource : NSObject <NSDraggingSource>
- (instancetype)initWithOperation:(NSDragOperation)operation ended:(SessionEnded)ended;
- (BOOL)isRunning;
- (void)stop;
@end

namespace {

// The source of the last drag. There is one pointer and so one drag, but a drop is handled before its session has
// ended.
__weak ParkletDragSource *latest = nil;

} // namespace

@implementation ParkletDragSource {
    NSDragOperation offered;
    SessionEnded onEnd;
}

- (instancetype)initWithOperation:(NSDragOperation)operation ended:(SessionEnded)ended
{
    self = [super init];
    if (self) {
        offered = operation;
        onEnd = std::move(ended);
    }
    return self;
}

- (BOOL)isRunning
{
    return onEnd != nullptr;
}

- (void)stop
{
    onEnd = nullptr;
}

- (NSDragOperation)draggingSession:(NSDraggingSession *)__unused session
    sourceOperationMaskForDraggingContext:(NSDraggingContext)__unused context
{
    return offered;
}

// Otherwise a modifier key would remove the only offered operation.
- (BOOL)ignoreModifierKeysForDraggingSession:(NSDraggingSession *)__unused session
{
    return YES;
}

- (void)draggingSession:(NSDraggingSession *)__unused session
           endedAtPoint:(NSPoint)point
              operation:(NSDragOperation)operation
{
    if (const SessionEnded ended = std::exchange(onEnd, nullptr))
        ended(point, operation);
}
@end

namespace {

constexpr NSUInteger kLeftButton = 1 << 0;

NSDragOperation nativeOperation(DragOperation operation)
{
    switch (operation) {
    case DragOperation::Copy:
        return NSDragOperationCopy;
    case DragOperation::Move:
        return NSDragOperationMove;
    case DragOperation::Link:
        return NSDragOperationLink;
    case DragOperation::None:
        break;
    }
    return NSDragOperationNone;
}

DragOperation performedOperation(NSDragOperation operation)
{
    if (operation == NSDragOperationNone)
        return DragOperation::None;
    if ((operation & NSDragOperationMove) != 0)
        return DragOperation::Move;
    return (operation & NSDragOperationLink) != 0 ? DragOperation::Link : DragOperation::Copy;
}

// Converts `frame` in `source` to the view of its window.
NSRect frameInView(const QRectF &frame, const QWidget &source, NSView *view)
{
    const QRectF placed(source.mapTo(source.window(), frame.topLeft()), frame.size());
    return (view.flipped ? placed : flippedIn(view.bounds.size.height, placed)).toCGRect();
}

NSArray<NSDraggingItem *> *nativeItems(const QList<DraggingItem> &items, const QWidget &source, NSView *view)
{
    NSMutableArray<NSDraggingItem *> *native = [NSMutableArray array];
    for (const DraggingItem &item : items) {
        NSURL *url = toNSURL(item.fileURL);
        if (!url)
            continue;
        NSDraggingItem *dragged = [[NSDraggingItem alloc] initWithPasteboardWriter:url];
        [dragged setDraggingFrame:frameInView(item.frame, source, view)
                         contents:toNSImage(framedPicture(item, source.devicePixelRatioF()), item.frame.size())];
        [native addObject:dragged];
    }
    return native;
}

NSEvent *mouseEvent(NSEventType type, NSWindow *window, NSPoint location)
{
    return [NSEvent mouseEventWithType:type
                              location:location
                         modifierFlags:NSEventModifierFlags {}
                             timestamp:NSProcessInfo.processInfo.systemUptime
                          windowNumber:window.windowNumber
                               context:nil
                           eventNumber:0
                            clickCount:1
                              pressure:0];
}

// The mouse event with which a session begins. Qt delivers its events later, so the current event may be any other.
NSEvent *draggedEvent(NSWindow *window)
{
    NSEvent *current = NSApplication.sharedApplication.currentEvent;
    if (current.type == NSEventTypeLeftMouseDragged && current.window == window)
        return current;
    return mouseEvent(NSEventTypeLeftMouseDragged, window, window.mouseLocationOutsideOfEventStream);
}

// The session has received the release that ends it, so Qt would consider the button still down.
void releaseButton(NSView *view, NSPoint point)
{
    NSWindow *window = view.window;
    if (!window)
        return;
    NSEvent *release = mouseEvent(NSEventTypeLeftMouseUp, window, [window convertPointFromScreen:point]);
    if (release)
        [view mouseUp:release];
}

} // namespace

struct MacDragSessions::Session {
    explicit Session(ParkletDragSource *draggingSource)
        : source(draggingSource)
    {
    }
    Q_DISABLE_COPY_MOVE(Session)
    ~Session() { [source stop]; }

    ParkletDragSource *source;
};

MacDragSessions::MacDragSessions(MacDragPasteboard &pasteboard)
    : dragPasteboard(pasteboard)
{
}

MacDragSessions::~MacDragSessions() = default;

bool MacDragSessions::isRunning() const
{
    return session && [session->source isRunning];
}

// Qt has not begun the drag, and considers it another program's.
bool isOwnDrag(const QDropEvent &)
{
    return [latest isRunning];
}

void MacDragSessions::begin(QWidget &source, const QList<DraggingItem> &items, DragOperation offered, Ended ended)
{
    if (isRunning() || items.isEmpty() || offered == DragOperation::None)
        return;
    NSView *view = (__bridge NSView *)reinterpret_cast<void *>(source.window()->winId());
    // A session that begins after the release would follow the pointer until the next click.
    if (!view.window || (NSEvent.pressedMouseButtons & kLeftButton) == 0)
        return;
    NSArray<NSDraggingItem *> *dragged = nativeItems(items, source, view);
    NSEvent *event = draggedEvent(view.window);
    if (dragged.count == 0 || !event)
        return;

    __weak NSView *origin = view;
    session = std::make_unique<Session>([[ParkletDragSource alloc]
        initWithOperation:nativeOperation(offered)
                    ended:[this, origin, ended = std::move(ended)](NSPoint point, NSDragOperation operation) {
                        dragPasteboard.ignoreContents();
                        releaseButton(origin, point);
                        ended(performedOperation(operation));
                    }]);
    latest = session->source;
    [view beginDraggingSessionWithItems:dragged event:event source:session->source];
}
