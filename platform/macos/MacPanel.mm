// SPDX-License-Identifier: MIT
#include "platform/macos/MacPanel.h"

#include <QEvent>
#include <QWindow>

#import <AppKit/AppKit.h>
#import <QuartzCore/QuartzCore.h>
#import <objc/runtime.h>

// The background of a panel. It leaves the pointer to Qt.
@interface ParkletBackground : NSVisualEffectView
@end

@implementation ParkletBackground
- (NSView *)hitTest:(NSPoint)__unused point
{
    return nil;
}
@end

namespace {

constexpr NSWindowStyleMask kStyleMask =
    NSWindowStyleMaskBorderless | NSWindowStyleMaskNonactivatingPanel | NSWindowStyleMaskFullSizeContentView;
static_assert(kStyleMask == 0x8080);

constexpr NSWindowCollectionBehavior kCollectionBehavior = NSWindowCollectionBehaviorCanJoinAllSpaces |
                                                           NSWindowCollectionBehaviorStationary |
                                                           NSWindowCollectionBehaviorFullScreenAuxiliary;
static_assert(kCollectionBehavior == 0x111);

// While it exists, a method of all panels does what `block` does. The block gets the panel and the method's arguments.
class ReplacedMethod {
public:
    ReplacedMethod(SEL selector, id (^blockFor)(IMP original))
        : method(class_getInstanceMethod([NSPanel class], selector))
        , original(method_getImplementation(method))
        , replacement(imp_implementationWithBlock(blockFor(original)))
    {
        method_setImplementation(method, replacement);
    }
    Q_DISABLE_COPY_MOVE(ReplacedMethod)
    ~ReplacedMethod()
    {
        method_setImplementation(method, original);
        imp_removeBlock(replacement);
    }

private:
    const Method method;
    const IMP original;
    const IMP replacement;
};

// While it exists, every new panel has our style mask and keeps it, whatever mask Qt sets. The window server reads only
// from a panel's initialiser whether a click activates the application. Qt has no window flag for that, and changing
// the mask later may change the panel's frame.
class PanelCreation {
    using Initializer = id (*)(id, SEL, NSRect, NSWindowStyleMask, NSBackingStoreType, BOOL, NSScreen *);
    using Setter = void (*)(id, SEL, NSWindowStyleMask);

    const ReplacedMethod initializer
    {
        @selector(initWithContentRect:styleMask:backing:defer:screen:), ^id(IMP original) {
            const auto initialize = reinterpret_cast<Initializer>(original);
            return ^id(id panel, NSRect frame, NSWindowStyleMask, NSBackingStoreType backing, BOOL defer,
                       NSScreen *screen) {
                return initialize(panel, @selector(initWithContentRect:styleMask:backing:defer:screen:), frame,
                                  kStyleMask, backing, defer, screen);
            };
        }
    };
    const ReplacedMethod setter
    {
        @selector(setStyleMask:), ^id(IMP original) {
            const auto set = reinterpret_cast<Setter>(original);
            return ^(id panel, NSWindowStyleMask) {
                set(panel, @selector(setStyleMask:), kStyleMask);
            };
        }
    };
};

// Qt sets a mask of its own again when the window flags change.
void restoreStyleMask(NSPanel *panel)
{
    if (!panel || panel.styleMask == kStyleMask)
        return;
    const NSRect frame = panel.frame;
    panel.styleMask = kStyleMask;
    // AppKit may have given the panel a new frame view of another size.
    [panel setFrame:frame display:NO];
}

// A mask image that is black inside the panel, and is stretched between its corners.
NSImage *cornerMask(double radius)
{
    const CGFloat side = 2 * radius + 1;
    NSImage *mask = [NSImage imageWithSize:NSSize{side, side}
                                   flipped:NO
                            drawingHandler:^BOOL(NSRect bounds) {
                                [NSColor.blackColor set];
                                [[NSBezierPath bezierPathWithRoundedRect:bounds xRadius:radius yRadius:radius] fill];
                                return YES;
                            }];
    mask.capInsets = NSEdgeInsets{radius, radius, radius, radius};
    mask.resizingMode = NSImageResizingModeStretch;
    return mask;
}

// Puts `background` under Qt's drawing. Recent versions of Qt draw into a layer of their view, and the background can
// be below it. Older versions draw into the view's own layer, which the background would cover.
void putUnder(NSView *contents, NSView *background)
{
    background.wantsLayer = YES;
    background.autoresizingMask = NSViewWidthSizable | NSViewHeightSizable;
    if (contents.layer.sublayers.count > 0) {
        background.frame = contents.bounds;
        [contents addSubview:background positioned:NSWindowBelow relativeTo:nil];
        background.layer.zPosition = -1;
    } else {
        background.frame = contents.frame;
        [contents.superview addSubview:background positioned:NSWindowBelow relativeTo:contents];
    }
}

// By value, because the block keeps a copy.
id observe(NSNotificationName name, std::function<void()> changed)
{
    return [NSNotificationCenter.defaultCenter addObserverForName:name
                                                           object:nil
                                                            queue:nil
                                                       usingBlock:^(NSNotification *) {
                                                           changed();
                                                       }];
}

Qt::WindowFlags flagsOf(const PanelStyle &style)
{
    Qt::WindowFlags flags = Qt::Tool | Qt::FramelessWindowHint;
    // The shelf receives keys after a click on it, without activating the application.
    flags.setFlag(Qt::WindowDoesNotAcceptFocus, style.role != QLatin1String("shelf"));
    return flags;
}

} // namespace

struct MacPanel::Native {
    explicit Native(const std::function<void()> &activationChanged)
        : resigned(observe(NSApplicationDidResignActiveNotification, activationChanged))
        , activated(observe(NSApplicationDidBecomeActiveNotification, activationChanged))
    {
    }
    Q_DISABLE_COPY_MOVE(Native)
    ~Native()
    {
        [NSNotificationCenter.defaultCenter removeObserver:resigned];
        [NSNotificationCenter.defaultCenter removeObserver:activated];
    }

    id resigned;
    id activated;
    QWindow nobody; // never visible
    __weak NSPanel *panel = nil;
    __weak NSVisualEffectView *background = nil;
};

MacPanel::MacPanel(QWidget &panelWindow, const PanelStyle &panelStyle)
    : window(&panelWindow)
    , style(panelStyle)
    , hover(panelWindow)
    , native(std::make_unique<Native>([this] {
        // Qt sends enter and leave events when the application becomes active or inactive.
        hover.forget();
        applyProperties();
    }))
{
    panelWindow.setAttribute(Qt::WA_TranslucentBackground);
    panelWindow.setAttribute(Qt::WA_ShowWithoutActivating);
    panelWindow.setWindowRole(style.role);
    panelWindow.setWindowFlags(flagsOf(style));
    adopt();
    panelWindow.installEventFilter(this);
}

MacPanel::~MacPanel() = default;

void MacPanel::orderFront()
{
    if (!window)
        return;
    window->show();
    applyProperties();
    [native->panel orderFrontRegardless];
}

void MacPanel::orderOut()
{
    // The handler of the leave event may delete the panel.
    const QPointer<QWidget> hidden = window;
    if (!hidden)
        return;
    hover.leave();
    if (hidden)
        hidden->hide();
}

bool MacPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != window)
        return QObject::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::WinIdChange:
        if (window->internalWinId())
            adopt();
        break;
    case QEvent::Show:
    case QEvent::WindowStateChange:
        applyProperties();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void MacPanel::adopt()
{
    WId id = 0;
    {
        const PanelCreation creation;
        id = window->winId();
    }
    NSView *contents = (__bridge NSView *)reinterpret_cast<void *>(id);
    if (![contents.window isKindOfClass:[NSPanel class]])
        return;
    native->panel = static_cast<NSPanel *>(contents.window);
    // In Qt, a window can become the main one unless it has a transient parent. Any parent will do.
    window->windowHandle()->setTransientParent(&native->nobody);
    applyProperties();
    hover.follow(contents);

    NSVisualEffectView *background = [[ParkletBackground alloc] initWithFrame:contents.frame];
    background.material = NSVisualEffectMaterialHUDWindow;
    background.blendingMode = NSVisualEffectBlendingModeBehindWindow;
    background.state = NSVisualEffectStateActive;
    background.maskImage = cornerMask(style.cornerRadius);
    [native->background removeFromSuperview];
    putUnder(contents, background);
    native->background = background;
}

void MacPanel::applyProperties()
{
    NSPanel *panel = native->panel;
    restoreStyleMask(panel);
    panel.floatingPanel = YES;
    panel.level = NSFloatingWindowLevel;
    panel.collectionBehavior = kCollectionBehavior;
    panel.movableByWindowBackground = NO;
    panel.hidesOnDeactivate = NO;
    panel.backgroundColor = NSColor.clearColor;
    // The symbols of the shelf are white, in light mode too.
    panel.appearance = [NSAppearance appearanceNamed:NSAppearanceNameDarkAqua];
    panel.hasShadow = YES;
    panel.animationBehavior = NSWindowAnimationBehaviorNone;
}
