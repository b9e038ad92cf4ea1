// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AccessibilityTrust.h"
#include "platform/ActivationPolicy.h"
#include "platform/Alerts.h"
#include "platform/ColorArchive.h"
#include "platform/DragPasteboard.h"
#include "platform/DragSessions.h"
#include "platform/DropPasteboard.h"
#include "platform/EventMonitors.h"
#include "platform/FileEventStreams.h"
#include "platform/FloatingPanels.h"
#include "platform/KeyTap.h"
#include "platform/LoginItem.h"
#include "platform/MainQueue.h"
#include "platform/MenuBar.h"
#include "platform/OpenPanels.h"
#include "platform/Pasteboard.h"
#include "platform/Screens.h"
#include "platform/StatusBar.h"
#include "platform/SystemAppearance.h"
#include "platform/ThumbnailGenerator.h"
#include "platform/UserDefaults.h"
#include "platform/Workspace.h"

#include <memory>
#include <optional>
#include <string>

// Every service that the application needs beyond Qt. main makes one and passes it on; tests pass a virtual one.
struct Platform {
    std::unique_ptr<MainQueue> mainQueue;
    std::unique_ptr<UserDefaults> userDefaults;
    std::unique_ptr<ColorArchive> colorArchive;
    std::unique_ptr<SystemAppearance> appearance;
    std::unique_ptr<Pasteboard> generalPasteboard;
    std::unique_ptr<DragPasteboard> dragPasteboard;
    std::unique_ptr<DropPasteboard> dropPasteboard;
    std::unique_ptr<EventMonitors> eventMonitors;
    std::unique_ptr<AccessibilityTrust> accessibilityTrust;
    std::unique_ptr<Workspace> workspace;
    std::unique_ptr<LoginItem> loginItem;
    std::unique_ptr<KeyTap> keyTap;
    std::unique_ptr<FileEventStreams> fileEventStreams;
    std::unique_ptr<ThumbnailGenerator> thumbnailGenerator;
    std::unique_ptr<FloatingPanels> floatingPanels;
    std::unique_ptr<DragSessions> dragSessions;
    std::unique_ptr<Screens> screens;
    std::unique_ptr<ActivationPolicy> activationPolicy;
    std::unique_ptr<MenuBar> menuBar;
    std::unique_ptr<StatusBar> statusBar;
    std::unique_ptr<Alerts> alerts;
    std::unique_ptr<OpenPanels> openPanels;
};

// Why the program cannot run here: an English text, to be translated in the context "Obstacle", and what replaces its
// %1.
struct Obstacle {
    const char *text;
    std::string detail;
};

// Prepares what the platform needs before the QApplication is made.
std::optional<Obstacle> preparePlatform();

// Makes the services of the desktop that this is built for. Needs the QApplication.
std::unique_ptr<Platform> createPlatform();
