// SPDX-License-Identifier: MIT
#include "platform/macos/MacEventMonitors.h"

#import <AppKit/AppKit.h>

static_assert(quint32{LeftMouseUp} == NSEventMask{NSEventMaskLeftMouseUp});
static_assert(quint32{LeftMouseDragged} == NSEventMask{NSEventMaskLeftMouseDragged});

struct MacEventMonitors::Monitor {
    explicit Monitor(std::function<void()> callback)
        : handler(std::move(callback))
    {
    }
    Q_DISABLE_COPY_MOVE(Monitor)
    ~Monitor()
    {
        if (token)
            [NSEvent removeMonitor:token];
    }

    const std::function<void()> handler;
    id token = nil;
};

MacEventMonitors::MacEventMonitors() = default;

MacEventMonitors::~MacEventMonitors() = default;

std::optional<EventMonitors::Token> MacEventMonitors::add(quint32 mask, std::function<void()> handler)
{
    const auto monitor = std::make_shared<Monitor>(std::move(handler));
    const std::weak_ptr<Monitor> watched = monitor;
    monitor->token = [NSEvent addGlobalMonitorForEventsMatchingMask:mask
                                                            handler:^(NSEvent *) {
                                                                // The handler may remove its own monitor.
                                                                if (const auto held = watched.lock())
                                                                    held->handler();
                                                            }];
    if (!monitor->token)
        return {};
    monitors[++lastToken] = monitor;
    return lastToken;
}

void MacEventMonitors::remove(Token token)
{
    monitors.erase(token);
}
