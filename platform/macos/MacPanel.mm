// SPDX-License-Identifier: MIT
#include "platform/macos/MacPanel.h"

#include <QEvent>
#include <QWindow>

#import <AppKit/AppKit.h>
#import <QuartzCore/QuartzCore.h>
#import <objc/runtime.h>

namespace {

constexpr NSWindowStyleMask kStyleMask =
    NSWindowStyleMaskBorderless | NSWindowStyleMaskNonactivatingPanel | NSWindowStyleMaskFullSizeContentView;
static_assert(kStyleMask == 0x8080);

constexpr NSWindowCollectionBehavior kCollectionBehavior = NSWindowCollectionBehaviorCanJoinAllSpaces |
                                                           NSWindowCollectionBehaviorStationary |
                                                           NSWindowCollectionBehaviorFullScreenAuxiliary;
static_assert(kCollectionBehavior == 0x111);

// While this lives, every panel is made nonactivating. The window server learns from a panel's initialiser alone
// whether a click on it activates the application, and Qt has no window flag for that.
class NonactivatingCreation {
public:
    NonactivatingCreation()
    {
        const auto initialize = reinterpret_cast<Initializer>(original);
        const SEL selector = method_getName(method);
        replacement = imp_implementationWithBlock(^id(id panel, NSRect frame, NSWindowStyleMask mask,
                                                      NSBackingStoreType backing, BOOL defer, NSScreen *screen) {
            return initialize(panel, selector, frame, mask | NSWindowStyleMaskNonactivatingPanel, backing, defer,
                              screen);
        });
        method_setImplementation(method, replacement);
    }
    Q_DISABLE_COPY_MOVE(NonactivatingCreation)
    ~NonactivatingCreation()
    {
        method_setImplementation(method, original);
        imp_removeBlock(replacement);
    }

private:
    using Initializer = id (*)(id, SEL, NSRect, NSWindowStyleMask, NSBackingStoreType, BOOL, NSScreen *);

    const Method method =
        class_getInstanceMethod([NSPanel class], @selector(initWithContentRect:styleMask:backing:defer:screen:));
    const IMP original = method_getImplementation(method);
    IMP replacement = nullptr;
};

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
        const NonactivatingCreation creation;
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

    // Beside Qt's view and under it: inside it would be drawn over.
    NSVisualEffectView *background = [[NSVisualEffectView alloc] initWithFrame:contents.frame];
    background.material = NSVisualEffectMaterialHUDWindow;
    background.blendingMode = NSVisualEffectBlendingModeBehindWindow;
    background.state = NSVisualEffectStateActive;
    background.wantsLayer = YES;
    background.layer.cornerRadius = style.cornerRadius;
    background.layer.masksToBounds = YES;
    background.autoresizingMask = NSViewWidthSizable | NSViewHeightSizable;
    [native->background removeFromSuperview];
    [contents.superview addSubview:background positioned:NSWindowBelow relativeTo:contents];
    native->background = background;
}

void MacPanel::applyProperties()
{
    NSPanel *panel = native->panel;
    if (panel.styleMask != kStyleMask)
        panel.styleMask = kStyleMask;
    panel.floatingPanel = YES;
    panel.level = NSFloatingWindowLevel;
    panel.collectionBehavior = kCollectionBehavior;
    panel.movableByWindowBackground = NO;
    panel.hidesOnDeactivate = NO;
    panel.backgroundColor = NSColor.clearColor;
    panel.hasShadow = YES;
    panel.animationBehavior = NSWindowAnimationBehaviorNone;
}
