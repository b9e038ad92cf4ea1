// SPDX-License-Identifier: MIT
#include "app/SharedInstances.h"

#include "platform/Platform.h"
#include "settings/BuildInfo.h"

namespace {

template<typename T, typename... Arguments>
T &makeOnce(std::unique_ptr<T> &slot, Arguments &&...arguments)
{
    if (!slot)
        slot = std::make_unique<T>(std::forward<Arguments>(arguments)...);
    return *slot;
}

} // namespace

SharedInstances::SharedInstances(Platform &services)
    : platform(services)
    , versionURL(BuildInfo::versionURL())
    , moreAppsURL(BuildInfo::moreAppsURL())
{
}

AppSettings &SharedInstances::settings()
{
    return makeOnce(appSettings, *platform.userDefaults, *platform.colorArchive, *platform.appearance);
}

NotificationCenter &SharedInstances::notifications()
{
    return makeOnce(center);
}

DragMonitor &SharedInstances::dragMonitor()
{
    return makeOnce(monitor, *platform.eventMonitors, *platform.dragPasteboard, *platform.mainQueue);
}

ScreenshotWatcher &SharedInstances::screenshotWatcher()
{
    return makeOnce(watcher, settings(), *platform.fileEventStreams, *platform.mainQueue);
}

PreferencesWindowController &SharedInstances::preferences()
{
    return makeOnce(preferencesController, platform, settings(), notifications());
}

UpdateChecker &SharedInstances::updateChecker()
{
    return makeOnce(checker, platform, versionURL, BuildInfo::runningVersion());
}

bool SharedInstances::isPreferencesWindowVisible() const
{
    return preferencesController && preferencesController->isWindowVisible();
}
