// SPDX-License-Identifier: MIT
#include "platform/Platform.h"
#include "platform/common/QtAlerts.h"
#include "platform/common/QtDropPasteboard.h"
#include "platform/common/QtMainQueue.h"
#include "platform/common/QtOpenPanels.h"
#include "platform/linux/NativeWayland.h"
#include "platform/linux/desktop/AutostartLoginItem.h"
#include "platform/linux/desktop/FrontmostApplication.h"
#include "platform/linux/desktop/LinuxWorkspace.h"
#include "platform/linux/drags/ForeignDragWatcher.h"
#include "platform/linux/drags/XcbDragPasteboard.h"
#include "platform/linux/drags/XcbDragSessions.h"
#include "platform/linux/drags/XcbDropPasteboard.h"
#include "platform/linux/drags/XcbEventMonitors.h"
#include "platform/linux/files/BackgroundUserDefaults.h"
#include "platform/linux/files/LinuxFileEventStreams.h"
#include "platform/linux/helpers/FileHelpers.h"
#include "platform/linux/looks/LinuxAppearance.h"
#include "platform/linux/looks/LinuxColorArchive.h"
#include "platform/linux/looks/LinuxMenuBar.h"
#include "platform/linux/looks/LinuxStatusBar.h"
#include "platform/linux/thumbnails/LinuxThumbnailGenerator.h"
#include "platform/linux/x11/LinuxActivationPolicy.h"
#include "platform/linux/x11/XInputTrust.h"
#include "platform/linux/x11/XcbConnection.h"
#include "platform/linux/x11/XcbFloatingPanels.h"
#include "platform/linux/x11/XcbKeyTap.h"
#include "platform/linux/x11/XcbPasteboard.h"
#include "platform/linux/x11/XcbScreens.h"

#include <QCursor>
#include <QDBusConnection>

#include <pwd.h>
#include <unistd.h>
#include <xcb/xcb.h>

namespace {

constexpr char kPlatform[] = "QT_QPA_PLATFORM";
constexpr char kWayland[] = "PARKLET_WAYLAND";

// Without HOME, Qt would use the root folder as the home folder.
void settleHome()
{
    if (!qEnvironmentVariableIsEmpty("HOME"))
        return;
    const passwd *user = ::getpwuid(::geteuid());
    if (user && user->pw_dir && *user->pw_dir)
        qputenv("HOME", user->pw_dir);
}

// Checks this before Qt does: without an X server, Qt aborts with a core dump.
std::optional<Obstacle> whyThereIsNoServer()
{
    const std::string display = qgetenv("DISPLAY").toStdString();
    if (display.empty())
        return Obstacle{QT_TRANSLATE_NOOP("Obstacle", "DISPLAY is not set; Parklet needs an X server, or XWayland in a "
                                                      "Wayland session"),
                        {}};
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    const bool fails = xcb_connection_has_error(connection) != 0;
    xcb_disconnect(connection);
    if (!fails)
        return {};
    return Obstacle{QT_TRANSLATE_NOOP("Obstacle", "cannot connect to the X server \"%1\" that DISPLAY names"), display};
}

// Only X11 lets a program follow all drags of other programs. So in a Wayland session that cannot show native panels,
// its X server (XWayland) is used.
void addX11(Platform &platform, const std::shared_ptr<FileHelpers> &files)
{
    const auto xcb = XcbConnection::open();
    // Drags select events on windows of other programs. On a shared connection that would replace the selections of
    // others.
    const auto drags = XcbConnection::open();
    const auto foreignDrags = std::make_shared<ForeignDragWatcher>(drags);
    platform.generalPasteboard = std::make_unique<XcbPasteboard>(xcb);
    platform.accessibilityTrust = std::make_unique<XInputTrust>(xcb);
    platform.workspace = std::make_unique<LinuxWorkspace>(
        [xcb]() -> std::optional<WindowIdentity> { return xcb ? frontmostWindow(*xcb) : std::nullopt; }, files);
    platform.dragPasteboard = std::make_unique<XcbDragPasteboard>(foreignDrags);
    auto drops = std::make_unique<XcbDropPasteboard>(drags);
    auto monitors = std::make_unique<XcbEventMonitors>(foreignDrags, [&platform] { return platform.screens->all(); });
    drops->onWithoutFiles = [foreignDrags] { return foreignDrags->drag().isWithoutFiles(); };
    drops->onArrived = [listener = monitors.get()] { listener->dropArrived(); };
    monitors->onExpectsDrop = [pasteboard = drops.get()] { return pasteboard->isExpecting(); };
    platform.dropPasteboard = std::move(drops);
    platform.eventMonitors = std::move(monitors);
    platform.dragSessions = std::make_unique<XcbDragSessions>(
        drags, [appearance = platform.appearance.get()] { return appearance->accentColor(); });
    platform.statusBar = std::make_unique<LinuxStatusBar>(xcb, *platform.appearance);
    platform.keyTap = std::make_unique<XcbKeyTap>(xcb);
    auto panels = std::make_unique<XcbFloatingPanels>(xcb);
    panels->onDragInProgress = [foreignDrags] { return foreignDrags->isBridged(); };
    platform.floatingPanels = std::move(panels);
    auto screens = std::make_unique<XcbScreens>(xcb);
    screens->onPointer = [foreignDrags]() -> std::optional<QPointF> {
        return foreignDrags->isBridged() ? foreignDrags->bridgedPointer() : QPointF(QCursor::pos());
    };
    platform.screens = std::move(screens);
}

} // namespace

std::optional<Obstacle> preparePlatform()
{
    settleHome();
    const QByteArray wanted = qgetenv(kPlatform);
    if (!wanted.isEmpty() && !wanted.startsWith("wayland") && !wanted.startsWith("xcb"))
        return {};
    // Native panels are used on request only, because they cannot yet do everything that panels on an X server can.
    if (!wanted.startsWith("xcb") && qgetenv(kWayland) == "native" && offersNativeWayland()) {
        prepareNativeWayland();
        // If Qt's plugin for Wayland is missing, Qt uses the X server.
        qputenv(kPlatform, "wayland;xcb");
        return {};
    }
    if (!wanted.startsWith("xcb"))
        qputenv(kPlatform, "xcb");
    return whyThereIsNoServer();
}

std::unique_ptr<Platform> createPlatform()
{
    auto platform = std::make_unique<Platform>();
    platform->mainQueue = std::make_unique<QtMainQueue>();
    platform->userDefaults = std::make_unique<BackgroundUserDefaults>();
    platform->colorArchive = std::make_unique<LinuxColorArchive>();
    auto appearance = std::make_unique<LinuxAppearance>();
    appearance->followPortal(QDBusConnection::sessionBus());
    platform->appearance = std::move(appearance);
    platform->fileEventStreams = std::make_unique<LinuxFileEventStreams>(*platform->mainQueue);
    platform->openPanels = std::make_unique<QtOpenPanels>();
    const auto files = std::make_shared<FileHelpers>(*platform->mainQueue);
    platform->dropPasteboard = std::make_unique<QtDropPasteboard>();
    platform->loginItem = std::make_unique<AutostartLoginItem>();
    platform->activationPolicy = std::make_unique<LinuxActivationPolicy>();
    platform->menuBar = std::make_unique<LinuxMenuBar>();
    platform->alerts = std::make_unique<QtAlerts>(*platform->appearance, *platform->activationPolicy);
    platform->thumbnailGenerator =
        std::make_unique<LinuxThumbnailGenerator>(*platform->mainQueue, files, ThumbnailCache::defaultFolder());
    if (!addNativeWayland(*platform, files))
        addX11(*platform, files);
    return platform;
}
