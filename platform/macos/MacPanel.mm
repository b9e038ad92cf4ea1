// SPDX-License-Identifier: MIT
#include "platform/macos/MacPanel.h"

#include <QEvent>
#include <QWindow>

#import <AppKit/AppKit.h>
#import <QuartzCore/QuartzCore.h>
#import <objc/runtime.h>

// The material of a panel. The pointer is Qt's.
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

// While this lives, a method of all panels does what `block` does, which takes the panel and the method's arguments.
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

// While this lives, every panel is made with our style mask and keeps it, whatever mask Qt sets. The window server
// learns from a panel's initialiser alone whether a click on it activates the application, Qt has no window flag for
// that, and a mask that changes later may cost the panel its frame.
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

// Qt gives a panel a mask of its own again when its window flags change.
void restoreStyleMask(NSPanel *panel)
{
    if (!panel || panel.styleMask == kStyleMask)
        return;
    const NSRect frame = panel.frame;
    panel.styleMask = kStyleMask;
    // AppKit may have made the panel a new frame view, as large as it likes.
    [panel setFrame:frame display:NO];
}

// Black where a panel is, stretched between its corners.
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

// Puts `background` under what Qt draws. Recent versions of Qt draw into a layer inside their view's, which the
// background can lie under; older ones draw into the layer of the view itself, and would be covered.
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

// A block holds what is passed by value.
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
    // The shelf answers keys once it has been clicked, which leaves the active application as it is.
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
    QWindow nobody; // never shown
    __weak NSPanel *panel = nil;
    __weak NSVisualEffectView *background = nil;
};

MacPanel::MacPanel(QWidget &panelWindow, const PanelStyle &panelStyle)
    : window(&panelWindow)
    , style(panelStyle)
    , hover(panelWindow)
    , native(std::make_unique<Native>([this] {
        // Qt says that the pointer has come or gone when the application becomes active or stops being so.
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
    // Whoever hears that the pointer has left may let go of the panel.
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
    // Qt lets a window become the main one unless it has a transient parent. Any will do.
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
    // Its symbols are white, whatever the system looks like.
    panel.appearance = [NSAppearance appearanceNamed:NSAppearanceNameDarkAqua];
    panel.hasShadow = YES;
    panel.animationBehavior = NSWindowAnimationBehaviorNone;
}
