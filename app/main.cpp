// SPDX-License-Identifier: MIT
#include "app/AppDelegate.h"
#include "app/CommandLine.h"
#include "app/SharedInstances.h"
#include "platform/Platform.h"
#include "platform/SessionInstance.h"
#include "settings/BuildInfo.h"

#include <QApplication>
#include <QSessionManager>

#include <algorithm>

int main(int argc, char *argv[])
{
    if (const auto answer = answerCommandLine({argv + std::min(argc, 1), argv + argc}))
        return give(*answer);
    if (const std::string obstacle = preparePlatform(); !obstacle.empty())
        return give({{}, "parklet: " + obstacle + "\n", 1});

    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Parklet"));
    QApplication::setApplicationVersion(BuildInfo::builtVersion());
    QApplication::setDesktopFileName(QStringLiteral("com.orvane.Parklet"));
    QApplication::setQuitOnLastWindowClosed(false);
    // Whether Parklet starts with the session is the user's setting, not a matter of what ran when the last one ended.
    QObject::connect(&application, &QGuiApplication::saveStateRequest, &application,
                     [](QSessionManager &session) { session.setRestartHint(QSessionManager::RestartNever); });

    const auto instance = createSessionInstance();
    // The shelf of this session is already there, and has been asked to show itself.
    if (!instance->claim())
        return 0;

    const auto platform = createPlatform();
    SharedInstances shared(*platform);
    AppDelegate delegate(shared);
    instance->onActivate = [&delegate] { delegate.showShelf(); };
    instance->onAction = [&delegate](const QString &name) { delegate.performAction(name); };
    platform->mainQueue->async([&delegate] { delegate.applicationDidFinishLaunching(); });
    return QApplication::exec();
}
