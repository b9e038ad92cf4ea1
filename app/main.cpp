// SPDX-License-Identifier: MIT
#include "app/AppDelegate.h"
#include "app/CommandLine.h"
#include "app/SharedInstances.h"
#include "app/Translations.h"
#include "platform/Platform.h"
#include "platform/ProcessEnd.h"
#include "platform/SessionInstance.h"
#include "settings/BuildInfo.h"

#include <QApplication>
#include <QSessionManager>

#include <algorithm>
#include <functional>

namespace {

// Prints the answer in the user's language. Translations need an application object; this one needs no display.
int tell(int argc, char *argv[], const std::function<CommandLineAnswer()> &answer)
{
    const QCoreApplication terminal(argc, argv);
    const Translations translations;
    return give(answer());
}

} // namespace

int main(int argc, char *argv[])
{
    const std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
    if (answerCommandLine(arguments))
        return tell(argc, argv, [&arguments] { return *answerCommandLine(arguments); });
    if (const auto obstacle = preparePlatform())
        return tell(argc, argv, [&obstacle] { return cannotStart("Obstacle", obstacle->text, obstacle->detail); });

    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Parklet"));
    QApplication::setApplicationVersion(BuildInfo::builtVersion());
    QApplication::setDesktopFileName(QStringLiteral("com.orvane.Parklet"));
    QApplication::setQuitOnLastWindowClosed(false);
    // The user's setting alone decides whether Parklet starts with the session, not the session manager.
    QObject::connect(&application, &QGuiApplication::saveStateRequest, &application,
                     [](QSessionManager &session) { session.setRestartHint(QSessionManager::RestartNever); });

    const ProcessEnd end;
    const auto instance = createSessionInstance();
    const Translations translations;
    if (!instance->claim()) {
        // Parklet already runs in this session, and has been asked to show its shelf.
        if (!instance->isUnanswered())
            return 0;
        return give(
            cannotStart("Obstacle",
                        QT_TRANSLATE_NOOP("Obstacle", "another Parklet of this session does not answer; end it, "
                                                      "and start this one again"),
                        {}));
    }

    const auto platform = createPlatform();
    SharedInstances shared(*platform);
    AppDelegate delegate(shared);
    instance->onActivate = [&delegate] { delegate.showShelf(); };
    instance->onAction = [&delegate](const QString &name) { delegate.performAction(name); };
    platform->mainQueue->async([&delegate, showsShelf = asksForShelf(arguments)] {
        delegate.applicationDidFinishLaunching();
        if (showsShelf)
            delegate.showShelf();
    });
    const int exitCode = QApplication::exec();
    ProcessEnd::startDeadline();
    return exitCode;
}
