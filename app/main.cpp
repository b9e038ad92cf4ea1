// SPDX-License-Identifier: MIT
#include "app/AppDelegate.h"
#include "app/SharedInstances.h"
#include "platform/Platform.h"
#include "platform/SessionInstance.h"
#include "settings/BuildInfo.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    preparePlatform();
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Parklet"));
    QApplication::setApplicationVersion(BuildInfo::builtVersion());
    QApplication::setDesktopFileName(QStringLiteral("com.orvane.Parklet"));
    QApplication::setQuitOnLastWindowClosed(false);

    const auto instance = createSessionInstance();
    // The shelf of this session is already there, and has been asked to show itself.
    if (!instance->claim())
        return 0;

    const auto platform = createPlatform();
    SharedInstances shared(*platform);
    AppDelegate delegate(shared);
    instance->onActivate = [&delegate] { delegate.showShelf(); };
    platform->mainQueue->async([&delegate] { delegate.applicationDidFinishLaunching(); });
    return QApplication::exec();
}
