// SPDX-License-Identifier: MIT
#pragma once

#include "drag/DragMonitor.h"
#include "platform/EventMonitors.h"
#include "shelf/CursorShelf.h"
#include "shelf/ShelfPanel.h"

#include <memory>
#include <optional>

class QMenu;
class SharedInstances;
class StatusItem;
class Timer;
struct Platform;

// Owns the objects that live for the whole run and connects them. It acts at launch, on the commands of the status
// menu, on notifications, and when a drag begins or ends in any program.
class AppDelegate : public DragMonitorDelegate {
    Q_OBJECT

public:
    explicit AppDelegate(SharedInstances &shared);
    ~AppDelegate() override;

    ShelfPanel shelf;
    CursorShelf cursorShelf;
    bool shelfShownByCurrentDrag = false; // the drag in progress made the shelf visible
    bool dropReceivedOnShelf = false;     // something was dropped on a shelf during the current drag

    // Call it once, when the main loop is about to run. Returns after the user has answered the questions at the
    // launch.
    void applicationDidFinishLaunching();

    // Shows the shelf if it is hidden.
    void showShelf();

    // Performs an action of the desktop's launcher. An unknown name does nothing.
    void performAction(const QString &name);

    void dragMonitorDidStartDrag(const QList<QUrl> &urls) override;
    void dragMonitorDidEndDrag() override;

public slots:
    void toggleShelf();
    void addFromClipboard();
    void openPreferences();
    void checkForUpdates();
    void openMoreApps();
    void toggleLaunchAtLogin();
    void handleSettingsChanged();
    void handleAppearancePaneActive(const QVariantMap &userInfo);

private:
    void setUpStatusItem();
    bool isShelfShown() const;
    void openShelfMenu(const QPoint &place);
    void startDragMonitor();
    bool requestAccessibilityPermission();
    bool askAboutUpdateChecks();
    void synchronizeLoginItem();
    void startProximityMonitor();
    void checkSoonWhetherUnused();
    void proximityCheck();

    SharedInstances &shared;
    Platform &platform;
    std::optional<EventMonitors::Token> proximityMonitor;
    std::unique_ptr<StatusItem> statusItem;
    std::unique_ptr<QMenu> shelfMenu; // the last one that was opened
    std::shared_ptr<Timer> accessibilityTimer;
    bool shelfWasVisibleBeforeAppearancePane = false;
};
