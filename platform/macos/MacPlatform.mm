// SPDX-License-Identifier: MIT
#include "platform/Platform.h"
#include "platform/common/QtDropPasteboard.h"
#include "platform/common/QtMainQueue.h"
#include "platform/common/QtPasteboard.h"
#include "platform/macos/MacAccessibilityTrust.h"
#include "platform/macos/MacActivationPolicy.h"
#include "platform/macos/MacAlerts.h"
#include "platform/macos/MacAppearance.h"
#include "platform/macos/MacColorArchive.h"
#include "platform/macos/MacDragPasteboard.h"
#include "platform/macos/MacDragSessions.h"
#include "platform/macos/MacEventMonitors.h"
#include "platform/macos/MacFileEventStreams.h"
#include "platform/macos/MacFloatingPanels.h"
#include "platform/macos/MacKeyTap.h"
#include "platform/macos/MacLoginItem.h"
#include "platform/macos/MacMenuBar.h"
#include "platform/macos/MacOpenPanels.h"
#include "platform/macos/MacScreens.h"
#include "platform/macos/MacStatusBar.h"
#include "platform/macos/MacThumbnailGenerator.h"
#include "platform/macos/MacUserDefaults.h"
#include "platform/macos/MacWorkspace.h"

std::optional<Obstacle> preparePlatform()
{
    // Otherwise Qt gives the program a place in the Dock and the focus when it starts.
    qputenv("QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM", "1");
    // Otherwise Qt activates Parklet whenever it raises a window, even a panel.
    qputenv("QT_MAC_SET_RAISE_PROCESS", "0");
    return {};
}

std::unique_ptr<Platform> createPlatform()
{
    auto platform = std::make_unique<Platform>();
    platform->mainQueue = std::make_unique<QtMainQueue>();
    platform->userDefaults = std::make_unique<MacUserDefaults>();
    platform->colorArchive = std::make_unique<MacColorArchive>();
    platform->appearance = std::make_unique<MacAppearance>();
    platform->dropPasteboard = std::make_unique<QtDropPasteboard>();
    platform->generalPasteboard = std::make_unique<QtPasteboard>();
    platform->fileEventStreams = std::make_unique<MacFileEventStreams>();
    platform->openPanels = std::make_unique<MacOpenPanels>();
    platform->accessibilityTrust = std::make_unique<MacAccessibilityTrust>();
    platform->workspace = std::make_unique<MacWorkspace>();
    platform->loginItem = std::make_unique<MacLoginItem>();
    auto dragPasteboard = std::make_unique<MacDragPasteboard>();
    platform->dragSessions = std::make_unique<MacDragSessions>(*dragPasteboard);
    platform->dragPasteboard = std::move(dragPasteboard);
    platform->eventMonitors = std::make_unique<MacEventMonitors>();
    platform->activationPolicy = std::make_unique<MacActivationPolicy>();
    platform->menuBar = std::make_unique<MacMenuBar>();
    platform->statusBar = std::make_unique<MacStatusBar>();
    platform->alerts = std::make_unique<MacAlerts>();
    platform->thumbnailGenerator = std::make_unique<MacThumbnailGenerator>();
    platform->keyTap = std::make_unique<MacKeyTap>();
    platform->floatingPanels = std::make_unique<MacFloatingPanels>();
    platform->screens = std::make_unique<MacScreens>();
    return platform;
}
