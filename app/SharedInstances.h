// SPDX-License-Identifier: MIT
#pragma once

#include "drag/DragMonitor.h"
#include "preferences/PreferencesWindowController.h"
#include "screenshots/ScreenshotWatcher.h"
#include "settings/AppSettings.h"
#include "settings/Notifications.h"
#include "updates/UpdateChecker.h"

#include <QUrl>

#include <memory>

struct Platform;

// The objects that exist once in the process. Each is created on first use and exists until the process ends.
class SharedInstances {
public:
    explicit SharedInstances(Platform &platform);

    Platform &platform;

    // The address from which the update checker fetches the version record.
    QUrl versionURL;

    // The web page that "More from Orvane" opens.
    QUrl moreAppsURL;

    AppSettings &settings();
    NotificationCenter &notifications();
    DragMonitor &dragMonitor();
    ScreenshotWatcher &screenshotWatcher();
    PreferencesWindowController &preferences();
    UpdateChecker &updateChecker();

    // Whether the object exists. These functions do not create it.
    bool hasPreferences() const { return preferencesController != nullptr; }
    bool hasUpdateChecker() const { return checker != nullptr; }

    // Whether the preferences window exists and is visible. Does not create it.
    bool isPreferencesWindowVisible() const;

private:
    std::unique_ptr<AppSettings> appSettings;
    std::unique_ptr<NotificationCenter> center;
    std::unique_ptr<DragMonitor> monitor;
    std::unique_ptr<ScreenshotWatcher> watcher;
    std::unique_ptr<PreferencesWindowController> preferencesController;
    std::unique_ptr<UpdateChecker> checker;
};
