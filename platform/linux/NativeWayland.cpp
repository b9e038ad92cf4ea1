// SPDX-License-Identifier: MIT
#include "platform/linux/NativeWayland.h"

#include "platform/Platform.h"
#include "platform/common/QtPasteboard.h"
#include "platform/linux/desktop/FrontmostApplication.h"
#include "platform/linux/desktop/LinuxWorkspace.h"
#include "platform/linux/looks/LinuxStatusBar.h"
#include "platform/linux/wayland/ForeignToplevels.h"
#include "platform/linux/wayland/LayerShell.h"
#include "platform/linux/wayland/WaylandConnection.h"
#include "platform/linux/wayland/WaylandDragWatcher.h"
#include "platform/linux/wayland/WaylandDrags.h"
#include "platform/linux/wayland/WaylandFloatingPanels.h"
#include "platform/linux/wayland/WaylandKeyTap.h"
#include "platform/linux/wayland/WaylandPasteboard.h"
#include "platform/linux/wayland/WaylandScreens.h"
#include "platform/linux/x11/XcbConnection.h"

#include <utility>

namespace {

// A compositor reports drags over a client's surface without any permission.
class Trusted : public AccessibilityTrust {
public:
    bool isProcessTrusted() const override { return true; }
    void openAccessibilitySettings() override {}
};

std::optional<WindowIdentity> frontmost(const ForeignToplevels *toplevels, XcbConnection *xcb)
{
    if (toplevels) {
        const auto application = toplevels->activeApplication();
        if (!application)
            return {};
        // For a window of XWayland this is its class.
        const QString name = QString::fromUtf8(*application);
        WindowIdentity identity;
        identity.applicationId = name;
        identity.className = name;
        return identity;
    }
    return xcb ? frontmostWindow(*xcb) : std::nullopt;
}

// Forwards the events of the panels to the services that need them.
void connectPanels(WaylandFloatingPanels &panels, WaylandScreens &screens, WaylandKeyTap &keyTap,
                   const std::shared_ptr<WaylandDragWatcher> &watcher)
{
    panels.onEvent = [&screens, &keyTap, watcher](LayerPanel &panel, PanelEvent event, const QPointF &position) {
        switch (event) {
        case PanelEvent::Pointer:
            screens.pointerSeen(position);
            keyTap.pointerOver(&panel);
            watcher->pointerOverPanel();
            break;
        case PanelEvent::PointerLeft:
            keyTap.pointerOver(nullptr);
            break;
        case PanelEvent::DragOver:
            screens.pointerSeen(position);
            watcher->draggedOverPanel();
            break;
        case PanelEvent::DragLeft:
            watcher->leftPanel();
            break;
        case PanelEvent::Dropped:
            watcher->droppedOnPanel();
            break;
        }
    };
    panels.onKey = [&keyTap](QKeyEvent &event) { return keyTap.keyPressed(event); };
    panels.onOrderedFront = [watcher] { watcher->panelShown(); };
    watcher->onPointer = [&screens](const QPointF &position) { screens.pointerSeen(position); };
}

} // namespace

bool offersNativeWayland()
{
    return WaylandConnection::isOffered();
}

void prepareNativeWayland()
{
    // Qt does not place the panels, and reports them where they were placed.
    qputenv("QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT", "1");
    qputenv("QT_WAYLAND_DISABLE_FIXED_POSITIONS", "1");
}

bool addNativeWayland(Platform &platform, const std::shared_ptr<FileHelpers> &files)
{
    auto shell = LayerShell::ofQt();
    const auto wayland = shell ? WaylandConnection::open() : nullptr;
    if (!wayland)
        return false;
    const auto areas = std::make_shared<WorkAreas>(wayland);
    // The session's X server, if it has one.
    const auto xcb = XcbConnection::open(nullptr);
    const auto watcher = std::make_shared<WaylandDragWatcher>(wayland, areas, xcb);
    const std::shared_ptr<ForeignToplevels> toplevels =
        wayland->foreignToplevelManager() ? std::make_shared<ForeignToplevels>(wayland) : nullptr;

    auto panels = std::make_unique<WaylandFloatingPanels>(std::move(shell), areas);
    auto screens = std::make_unique<WaylandScreens>(areas);
    auto keyTap = std::make_unique<WaylandKeyTap>();
    connectPanels(*panels, *screens, *keyTap, watcher);

    platform.accessibilityTrust = std::make_unique<Trusted>();
    if (wayland->dataControlManager())
        platform.generalPasteboard = std::make_unique<WaylandPasteboard>(wayland, std::make_unique<QtPasteboard>());
    else
        platform.generalPasteboard = std::make_unique<QtPasteboard>();
    platform.workspace =
        std::make_unique<LinuxWorkspace>([toplevels, xcb] { return frontmost(toplevels.get(), xcb.get()); }, files);
    platform.dragPasteboard = std::make_unique<WaylandDragPasteboard>(watcher);
    platform.eventMonitors = std::make_unique<WaylandEventMonitors>(watcher);
    platform.dragSessions = std::make_unique<WaylandDragSessions>(
        watcher, [appearance = platform.appearance.get()] { return appearance->accentColor(); });
    platform.statusBar = std::make_unique<LinuxStatusBar>(nullptr, *platform.appearance);
    platform.keyTap = std::move(keyTap);
    platform.floatingPanels = std::move(panels);
    platform.screens = std::move(screens);
    return true;
}
