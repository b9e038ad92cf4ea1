// SPDX-License-Identifier: MIT
#include "platform/macos/MacScreens.h"

#include "platform/common/Flipped.h"

#include <utility>

#import <AppKit/AppKit.h>

namespace {

double primaryHeight()
{
    return NSScreen.screens.firstObject.frame.size.height;
}

Screen screenOf(NSScreen *screen)
{
    const double height = primaryHeight();
    return {flippedIn(height, QRectF::fromCGRect(screen.frame)),
            flippedIn(height, QRectF::fromCGRect(screen.visibleFrame)), screen.backingScaleFactor};
}

} // namespace

struct MacScreens::Observer {
    // By value, because the block keeps a copy.
    explicit Observer(std::function<void()> changed)
        : token([NSNotificationCenter.defaultCenter
              addObserverForName:NSApplicationDidChangeScreenParametersNotification
                          object:nil
                           queue:NSOperationQueue.mainQueue
                      usingBlock:^(NSNotification *) {
                          changed();
                      }])
    {
    }
    Q_DISABLE_COPY_MOVE(Observer)
    ~Observer() { [NSNotificationCenter.defaultCenter removeObserver:token]; }

    id token;
};

MacScreens::MacScreens()
    : observer(std::make_unique<Observer>([this] { report(); }))
    , reported(all())
{
}

MacScreens::~MacScreens() = default;

std::optional<Screen> MacScreens::main() const
{
    NSScreen *screen = NSScreen.mainScreen;
    if (!screen)
        return {};
    return screenOf(screen);
}

QList<Screen> MacScreens::all() const
{
    QList<Screen> screens;
    for (NSScreen *screen in NSScreen.screens)
        screens.append(screenOf(screen));
    return screens;
}

std::optional<QPointF> MacScreens::pointer() const
{
    return flippedIn(primaryHeight(), QPointF::fromCGPoint(NSEvent.mouseLocation));
}

void MacScreens::report()
{
    const QList<Screen> before = std::exchange(reported, all());
    if (onChange && before != reported)
        onChange();
}
