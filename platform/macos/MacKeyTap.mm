// SPDX-License-Identifier: MIT
#include "platform/macos/MacKeyTap.h"

#include "platform/macos/MacConversions.h"

#import <ApplicationServices/ApplicationServices.h>

namespace {

// The code belongs to a place on the keyboard, the first letter of the third row, whatever the layout types there.
constexpr int64_t kCodeOfA = 0;

Qt::KeyboardModifiers modifiersOf(CGEventFlags flags)
{
    Qt::KeyboardModifiers modifiers;
    modifiers.setFlag(Qt::ControlModifier, (flags & kCGEventFlagMaskCommand) != 0);
    modifiers.setFlag(Qt::ShiftModifier, (flags & kCGEventFlagMaskShift) != 0);
    modifiers.setFlag(Qt::AltModifier, (flags & kCGEventFlagMaskAlternate) != 0);
    modifiers.setFlag(Qt::MetaModifier, (flags & kCGEventFlagMaskControl) != 0);
    return modifiers;
}

CGEventRef tapCallback(CGEventTapProxy, CGEventType type, CGEventRef event, void *userInfo)
{
    if (type != kCGEventKeyDown)
        return event;
    const int64_t code = CGEventGetIntegerValueField(event, kCGKeyboardEventKeycode);
    const KeyTap::Handler handler =
        *static_cast<const KeyTap::Handler *>(userInfo); // a copy, because it may remove the tap
    const bool swallowed = handler(code == kCodeOfA ? Qt::Key_A : Qt::Key_unknown, modifiersOf(CGEventGetFlags(event)));
    return swallowed ? nullptr : event;
}

} // namespace

struct MacKeyTap::Tap {
    explicit Tap(Handler tapHandler)
        : handler(std::move(tapHandler))
        , port(CGEventTapCreate(kCGSessionEventTap, kCGHeadInsertEventTap, kCGEventTapOptionDefault,
                                CGEventMaskBit(kCGEventKeyDown), tapCallback, &handler))
    {
        if (!port)
            return;
        source.reset(CFMachPortCreateRunLoopSource(kCFAllocatorDefault, port.get(), 0));
        CFRunLoopAddSource(CFRunLoopGetMain(), source.get(), kCFRunLoopCommonModes);
        CGEventTapEnable(port.get(), true);
    }
    Q_DISABLE_COPY_MOVE(Tap)
    ~Tap()
    {
        if (!port)
            return;
        CGEventTapEnable(port.get(), false);
        CFRunLoopRemoveSource(CFRunLoopGetMain(), source.get(), kCFRunLoopCommonModes);
        CFMachPortInvalidate(port.get());
    }

    Handler handler;
    CFRef<CFMachPortRef> port;
    CFRef<CFRunLoopSourceRef> source;
};

MacKeyTap::MacKeyTap() = default;

MacKeyTap::~MacKeyTap() = default;

bool MacKeyTap::install(Handler handler)
{
    remove();
    tap = std::make_unique<Tap>(std::move(handler));
    if (!tap->port)
        tap.reset();
    return tap != nullptr;
}

void MacKeyTap::remove()
{
    tap.reset();
}
