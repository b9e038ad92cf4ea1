// SPDX-License-Identifier: MIT
#pragma once

#include <ApplicationServices/ApplicationServices.h>
#include <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@class CALayer, NSColor, NSGraphicsContext, NSImage, NSMenu, NSScreen, NSView, NSWindow;

// Menus.
@interface NSMenuItem : NSObject <NSCopying>
- (instancetype)initWithTitle:(NSString *)string action:(nullable SEL)selector keyEquivalent:(NSString *)charCode;
@property(copy) NSString *title;
@property(nullable) SEL action;
@property(nullable, weak) id target;
@property(nullable, strong) NSMenu *submenu;
@property(copy) NSString *keyEquivalent;
@property(getter=isSeparatorItem, readonly) BOOL separatorItem;
@end
@interface NSMenu : NSObject <NSCopying>
- (instancetype)initWithTitle:(NSString *)title;
@property(copy) NSString *title;
@property(readonly) NSInteger numberOfItems;
- (void)addItem:(NSMenuItem *)newItem;
- (nullable NSMenuItem *)itemAtIndex:(NSInteger)index;
- (nullable NSMenuItem *)itemWithTitle:(NSString *)title;
@end

// Events.
typedef NS_OPTIONS(unsigned long long, NSEventMask) {
    NSEventMaskLeftMouseUp = 1ULL << 2,
    NSEventMaskLeftMouseDragged = 1ULL << 6,
};
typedef NS_ENUM(NSUInteger, NSEventType) {
    NSEventTypeLeftMouseDown = 1,
    NSEventTypeLeftMouseUp = 2,
    NSEventTypeLeftMouseDragged = 6,
    NSEventTypeApplicationDefined = 15,
};
typedef NS_OPTIONS(NSUInteger, NSEventModifierFlags) { NSEventModifierFlagShift = 1 << 17 };
@interface NSEvent : NSObject
@property(class, readonly) NSPoint mouseLocation;
@property(class, readonly) NSUInteger pressedMouseButtons API_AVAILABLE(macos(10.6));
@property(readonly) NSEventType type;
@property(nullable, readonly, weak) NSWindow *window;
@property(readonly) NSPoint locationInWindow;
+ (nullable NSEvent *)mouseEventWithType:(NSEventType)type
                                location:(NSPoint)location
                           modifierFlags:(NSEventModifierFlags)flags
                               timestamp:(NSTimeInterval)time
                            windowNumber:(NSInteger)wNum
                                 context:(nullable NSGraphicsContext *)unusedPassNil
                             eventNumber:(NSInteger)eNum
                              clickCount:(NSInteger)cNum
                                pressure:(float)pressure;
+ (nullable NSEvent *)otherEventWithType:(NSEventType)type
                                location:(NSPoint)location
                           modifierFlags:(NSEventModifierFlags)flags
                               timestamp:(NSTimeInterval)time
                            windowNumber:(NSInteger)wNum
                                 context:(nullable NSGraphicsContext *)unusedPassNil
                                 subtype:(short)subtype
                                   data1:(NSInteger)d1
                                   data2:(NSInteger)d2;
+ (nullable id)addGlobalMonitorForEventsMatchingMask:(NSEventMask)mask
                                             handler:(void (^)(NSEvent *event))block API_AVAILABLE(macos(10.6));
+ (void)removeMonitor:(id)eventMonitor API_AVAILABLE(macos(10.6));
@end

// Pasteboards.
typedef NSString *NSPasteboardName;
typedef NSString *NSPasteboardReadingOptionKey;
extern "C" NSPasteboardName const NSPasteboardNameDrag API_AVAILABLE(macos(10.13));
@protocol NSPasteboardWriting <NSObject>
@end
@interface NSString (NSPasteboardSupport) <NSPasteboardWriting>
@end
@interface NSURL (NSPasteboardSupport) <NSPasteboardWriting>
@end
@interface NSPasteboard : NSObject
- (NSInteger)clearContents API_AVAILABLE(macos(10.6));
- (BOOL)writeObjects:(NSArray<id<NSPasteboardWriting>> *)objects API_AVAILABLE(macos(10.6));
+ (NSPasteboard *)pasteboardWithName:(NSPasteboardName)name;
@property(readonly) NSInteger changeCount;
- (nullable NSArray *)readObjectsForClasses:(NSArray<Class> *)classArray
                                    options:(nullable NSDictionary<NSPasteboardReadingOptionKey, id> *)options
    API_AVAILABLE(macos(10.6));
@end

// The workspace.
API_AVAILABLE(macos(10.6))
@interface NSRunningApplication : NSObject
@property(nullable, readonly, copy) NSString *bundleIdentifier;
@end
@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace *sharedWorkspace;
@property(nullable, readonly, strong) NSRunningApplication *frontmostApplication API_AVAILABLE(macos(10.7));
- (BOOL)openURL:(NSURL *)url;
- (NSImage *)iconForFile:(NSString *)fullPath;
- (nullable NSURL *)URLForApplicationWithBundleIdentifier:(NSString *)bundleIdentifier API_AVAILABLE(macos(10.6));
@end

// Colours.
@interface NSColorSpace : NSObject <NSSecureCoding>
@property(class, strong, readonly) NSColorSpace *sRGBColorSpace API_AVAILABLE(macos(10.5));
@property(class, strong, readonly) NSColorSpace *extendedSRGBColorSpace API_AVAILABLE(macos(10.12));
@end
@interface NSColor : NSObject <NSCopying, NSSecureCoding>
+ (NSColor *)colorWithColorSpace:(NSColorSpace *)space
                      components:(const CGFloat *)components
                           count:(NSInteger)numberOfComponents;
@property(class, strong, readonly) NSColor *clearColor;
@property(class, strong, readonly) NSColor *blackColor;
- (void)set;
@property(class, strong, readonly) NSColor *labelColor API_AVAILABLE(macos(10.10));
@property(class, strong, readonly) NSColor *controlAccentColor API_AVAILABLE(macos(10.14));
- (nullable NSColor *)colorUsingColorSpace:(NSColorSpace *)space;
@property(readonly) CGFloat redComponent;
@property(readonly) CGFloat greenComponent;
@property(readonly) CGFloat blueComponent;
@property(readonly) CGFloat alphaComponent;
@end

// Pictures.
typedef CGFloat NSFontWeight;
extern "C" const NSFontWeight NSFontWeightLight API_AVAILABLE(macos(10.11));
extern "C" const NSFontWeight NSFontWeightBold API_AVAILABLE(macos(10.11));
typedef NSString *NSImageName;
typedef NS_ENUM(NSUInteger, NSCompositingOperation) { NSCompositingOperationSourceOver = 2 };
@interface NSGraphicsContext : NSObject
+ (NSGraphicsContext *)graphicsContextWithCGContext:(CGContextRef)graphicsPort
                                            flipped:(BOOL)initialFlippedState API_AVAILABLE(macos(10.10));
@property(class, nullable, strong) NSGraphicsContext *currentContext;
+ (void)saveGraphicsState;
+ (void)restoreGraphicsState;
@end
API_AVAILABLE(macos(11.0))
@interface NSImageSymbolConfiguration : NSObject <NSCopying, NSSecureCoding>
+ (instancetype)configurationWithPointSize:(CGFloat)pointSize weight:(NSFontWeight)weight;
@end
typedef NS_ENUM(NSInteger, NSImageResizingMode) { NSImageResizingModeTile = 0, NSImageResizingModeStretch = 1 };
@interface NSBezierPath : NSObject <NSCopying, NSSecureCoding>
+ (NSBezierPath *)bezierPathWithRoundedRect:(NSRect)rect
                                    xRadius:(CGFloat)xRadius
                                    yRadius:(CGFloat)yRadius API_AVAILABLE(macos(10.5));
- (void)fill;
@end
@interface NSImage : NSObject <NSCopying, NSSecureCoding>
+ (nullable NSImage *)imageNamed:(NSImageName)name;
+ (nullable instancetype)imageWithSystemSymbolName:(NSString *)name
                          accessibilityDescription:(nullable NSString *)description API_AVAILABLE(macos(11.0));
- (nullable NSImage *)imageWithSymbolConfiguration:(NSImageSymbolConfiguration *)configuration
    API_AVAILABLE(macos(11.0));
- (instancetype)initWithCGImage:(CGImageRef)cgImage size:(NSSize)size API_AVAILABLE(macos(10.6));
+ (instancetype)imageWithSize:(NSSize)size
                      flipped:(BOOL)drawingHandlerShouldBeCalledWithFlippedContext
               drawingHandler:(BOOL (^)(NSRect dstRect))drawingHandler API_AVAILABLE(macos(10.8));
@property NSSize size;
@property NSEdgeInsets capInsets API_AVAILABLE(macos(10.10));
@property NSImageResizingMode resizingMode API_AVAILABLE(macos(10.10));
- (void)drawInRect:(NSRect)rect fromRect:(NSRect)fromRect operation:(NSCompositingOperation)op fraction:(CGFloat)delta;
@end

// Views.
typedef NS_OPTIONS(NSUInteger, NSAutoresizingMaskOptions) {
    NSViewWidthSizable = 2,
    NSViewHeightSizable = 16,
};
typedef NS_OPTIONS(NSUInteger, NSTrackingAreaOptions) {
    NSTrackingMouseEnteredAndExited = 0x01,
    NSTrackingMouseMoved = 0x02,
    NSTrackingActiveAlways = 0x80,
    NSTrackingInVisibleRect = 0x200,
};
API_AVAILABLE(macos(10.5))
@interface NSTrackingArea : NSObject <NSCopying>
- (instancetype)initWithRect:(NSRect)rect
                     options:(NSTrackingAreaOptions)options
                       owner:(nullable id)owner
                    userInfo:(nullable NSDictionary<id, id> *)userInfo;
@property(readonly) NSTrackingAreaOptions options;
@property(nullable, readonly, weak) id owner;
@end
typedef NS_OPTIONS(NSUInteger, NSDragOperation) {
    NSDragOperationNone = 0,
    NSDragOperationCopy = 1,
    NSDragOperationLink = 2,
    NSDragOperationMove = 16,
};
typedef NS_ENUM(NSInteger, NSDraggingContext) {
    NSDraggingContextOutsideApplication = 0,
    NSDraggingContextWithinApplication,
};
API_AVAILABLE(macos(10.7))
@interface NSDraggingItem : NSObject
- (instancetype)initWithPasteboardWriter:(id<NSPasteboardWriting>)pasteboardWriter;
- (void)setDraggingFrame:(NSRect)frame contents:(nullable id)contents;
@property(readonly, strong) id item;
@property NSRect draggingFrame;
@end
API_AVAILABLE(macos(10.7))
@interface NSDraggingSession : NSObject
@end
@protocol NSDraggingSource <NSObject>
- (NSDragOperation)draggingSession:(NSDraggingSession *)session
    sourceOperationMaskForDraggingContext:(NSDraggingContext)context;
@optional
- (void)draggingSession:(NSDraggingSession *)session
           endedAtPoint:(NSPoint)screenPoint
              operation:(NSDragOperation)operation API_AVAILABLE(macos(10.7));
- (BOOL)ignoreModifierKeysForDraggingSession:(NSDraggingSession *)session API_AVAILABLE(macos(10.7));
@end
typedef NS_ENUM(NSInteger, NSWindowOrderingMode) { NSWindowAbove = 1, NSWindowBelow = -1, NSWindowOut = 0 };
@interface NSResponder : NSObject
- (void)mouseDown:(NSEvent *)event;
- (void)mouseUp:(NSEvent *)event;
- (void)mouseEntered:(NSEvent *)event;
- (void)mouseMoved:(NSEvent *)event;
- (void)mouseExited:(NSEvent *)event;
@end
@interface NSView : NSResponder
- (instancetype)initWithFrame:(NSRect)frameRect;
@property(nullable, readonly, unsafe_unretained) NSWindow *window;
@property(nullable, readonly, unsafe_unretained) NSView *superview;
@property NSRect frame;
@property NSRect bounds;
@property(getter=isFlipped, readonly) BOOL flipped;
- (nullable NSView *)hitTest:(NSPoint)point;
- (NSDraggingSession *)beginDraggingSessionWithItems:(NSArray<NSDraggingItem *> *)items
                                               event:(NSEvent *)event
                                              source:(id<NSDraggingSource>)source API_AVAILABLE(macos(10.7));
@property NSAutoresizingMaskOptions autoresizingMask;
@property BOOL wantsLayer API_AVAILABLE(macos(10.5));
@property(nullable, strong) CALayer *layer API_AVAILABLE(macos(10.5));
@property(copy) NSArray<__kindof NSView *> *subviews;
@property(readonly, copy) NSArray<NSTrackingArea *> *trackingAreas API_AVAILABLE(macos(10.5));
- (void)addTrackingArea:(NSTrackingArea *)trackingArea API_AVAILABLE(macos(10.5));
- (void)removeTrackingArea:(NSTrackingArea *)trackingArea API_AVAILABLE(macos(10.5));
- (void)addSubview:(NSView *)view positioned:(NSWindowOrderingMode)place relativeTo:(nullable NSView *)otherView;
- (void)removeFromSuperview;
@end
typedef NS_ENUM(NSInteger, NSVisualEffectMaterial) {
    NSVisualEffectMaterialHUDWindow API_AVAILABLE(macos(10.14)) = 13,
};
typedef NS_ENUM(NSInteger, NSVisualEffectBlendingMode) {
    NSVisualEffectBlendingModeBehindWindow,
    NSVisualEffectBlendingModeWithinWindow,
};
typedef NS_ENUM(NSInteger, NSVisualEffectState) {
    NSVisualEffectStateFollowsWindowActiveState,
    NSVisualEffectStateActive,
    NSVisualEffectStateInactive,
};
API_AVAILABLE(macos(10.10))
@interface NSVisualEffectView : NSView
@property NSVisualEffectMaterial material;
@property NSVisualEffectBlendingMode blendingMode;
@property NSVisualEffectState state;
@property(nullable, strong) NSImage *maskImage;
@end
typedef NSInteger NSControlStateValue;
static const NSControlStateValue NSControlStateValueOff API_AVAILABLE(macos(10.13)) = 0;
static const NSControlStateValue NSControlStateValueOn API_AVAILABLE(macos(10.13)) = 1;
@interface NSControl : NSView
- (void)performClick:(nullable id)sender;
@end
@interface NSButton : NSControl
+ (instancetype)checkboxWithTitle:(NSString *)title
                           target:(nullable id)target
                           action:(nullable SEL)action API_AVAILABLE(macos(10.12));
@property(copy) NSString *title;
@property(nullable, strong) NSImage *image;
@property NSControlStateValue state;
@end
typedef NS_ENUM(NSInteger, NSScrollerStyle) {
    NSScrollerStyleLegacy API_AVAILABLE(macos(10.7)) = 0,
    NSScrollerStyleOverlay API_AVAILABLE(macos(10.7)) = 1,
};
typedef NS_ENUM(NSUInteger, NSControlSize) { NSControlSizeRegular API_AVAILABLE(macos(10.12)) = 0 };
@interface NSScroller : NSControl
+ (CGFloat)scrollerWidthForControlSize:(NSControlSize)controlSize
                         scrollerStyle:(NSScrollerStyle)scrollerStyle API_AVAILABLE(macos(10.7));
@end
@interface NSScrollView : NSView
@property(nullable, strong) __kindof NSView *documentView;
@property BOOL drawsBackground;
@end
@interface NSText : NSView
@property(copy) NSString *string;
@property(nullable, copy) NSColor *textColor;
@property(getter=isEditable) BOOL editable;
@property BOOL drawsBackground;
@end
@interface NSTextView : NSText
+ (NSScrollView *)scrollableTextView API_AVAILABLE(macos(10.14));
@end

// Windows.
typedef NSString *NSAppearanceName;
extern "C" NSAppearanceName const NSAppearanceNameDarkAqua API_AVAILABLE(macos(10.14));
API_AVAILABLE(macos(10.9))
@interface NSAppearance : NSObject <NSSecureCoding>
+ (nullable NSAppearance *)appearanceNamed:(NSAppearanceName)name;
@property(readonly, copy) NSAppearanceName name;
@end
typedef NSInteger NSWindowLevel;
static const NSWindowLevel NSFloatingWindowLevel = 3;
static const NSWindowLevel NSModalPanelWindowLevel = 8;
typedef NS_OPTIONS(NSUInteger, NSWindowStyleMask) {
    NSWindowStyleMaskBorderless = 0,
    NSWindowStyleMaskNonactivatingPanel = 1 << 7,
    NSWindowStyleMaskFullSizeContentView API_AVAILABLE(macos(10.10)) = 1 << 15,
};
typedef NS_OPTIONS(NSUInteger, NSWindowCollectionBehavior) {
    NSWindowCollectionBehaviorCanJoinAllSpaces = 1 << 0,
    NSWindowCollectionBehaviorMoveToActiveSpace = 1 << 1,
    NSWindowCollectionBehaviorStationary API_AVAILABLE(macos(10.6)) = 1 << 4,
    NSWindowCollectionBehaviorFullScreenAuxiliary API_AVAILABLE(macos(10.7)) = 1 << 8,
};
typedef NS_ENUM(NSUInteger, NSBackingStoreType) { NSBackingStoreBuffered = 2 };
typedef NS_ENUM(NSInteger, NSWindowAnimationBehavior) {
    NSWindowAnimationBehaviorDefault = 0,
    NSWindowAnimationBehaviorNone = 2,
};
@interface NSWindow : NSResponder
- (instancetype)initWithContentRect:(NSRect)contentRect
                          styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backingStoreType
                              defer:(BOOL)flag
                             screen:(nullable NSScreen *)screen;
@property(nullable, strong) __kindof NSView *contentView;
@property NSWindowStyleMask styleMask;
@property NSWindowLevel level;
@property NSWindowCollectionBehavior collectionBehavior API_AVAILABLE(macos(10.5));
@property(getter=isMovableByWindowBackground) BOOL movableByWindowBackground;
@property BOOL hidesOnDeactivate;
@property(null_resettable, copy) NSColor *backgroundColor;
@property BOOL hasShadow;
@property NSWindowAnimationBehavior animationBehavior API_AVAILABLE(macos(10.7));
@property(nullable, strong) NSAppearance *appearance API_AVAILABLE(macos(10.9));
@property(getter=isOpaque) BOOL opaque;
@property(getter=isVisible, readonly) BOOL visible;
@property(getter=isKeyWindow, readonly) BOOL keyWindow;
@property(readonly) BOOL canBecomeKeyWindow;
@property(readonly) BOOL canBecomeMainWindow;
- (void)orderFrontRegardless;
- (void)center;
@property(readonly) NSRect frame;
- (void)setFrame:(NSRect)frameRect display:(BOOL)flag;
@property(readonly) NSInteger windowNumber;
@property(readonly) NSPoint mouseLocationOutsideOfEventStream;
- (NSPoint)convertPointFromScreen:(NSPoint)point API_AVAILABLE(macos(10.12));
@end
@interface NSPanel : NSWindow
@property(getter=isFloatingPanel) BOOL floatingPanel;
@end
typedef NSInteger NSModalResponse;
enum : NSModalResponse { NSModalResponseOK API_AVAILABLE(macos(10.9)) = 1 };
enum : NSModalResponse { NSModalResponseAbort API_AVAILABLE(macos(10.9)) = -1001 };
enum : NSModalResponse { NSAlertFirstButtonReturn = 1000 };
@interface NSAlert : NSObject
@property(copy) NSString *messageText;
@property(copy) NSString *informativeText;
@property(null_resettable, strong) NSImage *icon;
- (NSButton *)addButtonWithTitle:(NSString *)title;
@property(readonly, copy) NSArray<NSButton *> *buttons;
@property(nullable, strong) NSView *accessoryView API_AVAILABLE(macos(10.5));
- (void)layout API_AVAILABLE(macos(10.5));
- (NSModalResponse)runModal;
@property(readonly, strong) NSWindow *window;
@end
@interface NSSavePanel : NSPanel
@property(nullable, readonly, copy) NSURL *URL;
@property(nullable, copy) NSURL *directoryURL API_AVAILABLE(macos(10.6));
@property(null_resettable, copy) NSString *title;
@property(null_resettable, copy) NSString *prompt;
@property BOOL treatsFilePackagesAsDirectories;
- (NSModalResponse)runModal;
- (void)cancel:(nullable id)sender;
@end
@interface NSOpenPanel : NSSavePanel
+ (NSOpenPanel *)openPanel;
@property BOOL canChooseFiles;
@property BOOL canChooseDirectories;
@property BOOL allowsMultipleSelection;
@end

// Screens.
@interface NSScreen : NSObject
@property(class, readonly, copy) NSArray<NSScreen *> *screens;
@property(class, readonly, nullable, strong) NSScreen *mainScreen;
@property(readonly) NSRect frame;
@property(readonly) NSRect visibleFrame;
@property(readonly) CGFloat backingScaleFactor API_AVAILABLE(macos(10.7));
@end

// The status bar.
static const CGFloat NSSquareStatusItemLength = -2.0;
API_AVAILABLE(macos(10.10))
@interface NSStatusBarButton : NSButton
@end
@interface NSStatusItem : NSObject
@property(nullable, readonly, strong) NSStatusBarButton *button API_AVAILABLE(macos(10.10));
@property(nullable, strong) NSMenu *menu;
@end
@interface NSStatusBar : NSObject
@property(class, readonly, strong) NSStatusBar *systemStatusBar;
- (NSStatusItem *)statusItemWithLength:(CGFloat)length;
- (void)removeStatusItem:(NSStatusItem *)item;
@end

// The application.
typedef NS_ENUM(NSInteger, NSApplicationActivationPolicy) {
    NSApplicationActivationPolicyRegular,
    NSApplicationActivationPolicyAccessory,
    NSApplicationActivationPolicyProhibited,
};
extern "C" NSNotificationName const NSApplicationDidBecomeActiveNotification;
extern "C" NSNotificationName const NSApplicationDidResignActiveNotification;
extern "C" NSNotificationName const NSApplicationDidFinishLaunchingNotification;
extern "C" NSNotificationName const NSApplicationDidChangeScreenParametersNotification;
@interface NSApplication : NSResponder
@property(class, readonly, strong) __kindof NSApplication *sharedApplication;
@property(getter=isActive, readonly) BOOL active;
@property(nullable, readonly, strong) NSWindow *modalWindow;
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)activationPolicy API_AVAILABLE(macos(10.6));
- (void)activateIgnoringOtherApps:(BOOL)ignoreOtherApps;
- (void)deactivate;
- (void)stopModalWithCode:(NSModalResponse)returnCode;
- (void)postEvent:(NSEvent *)event atStart:(BOOL)flag;
@property(nullable, readonly, strong) NSEvent *currentEvent;
@property(nullable, strong) NSMenu *mainMenu;
@property(null_resettable, strong) NSImage *applicationIconImage;
@end

#pragma clang assume_nonnull end
