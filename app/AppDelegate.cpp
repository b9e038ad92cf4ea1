// SPDX-License-Identifier: MIT
#include "app/AppDelegate.h"

#include "app/LaunchQuestions.h"
#include "app/MainMenu.h"
#include "app/SharedInstances.h"
#include "app/StatusMenu.h"
#include "platform/Platform.h"
#include "platform/WhileAlive.h"
#include "settings/BuildInfo.h"

#include <QCoreApplication>

namespace {

constexpr double kTrustPollInterval = 5.0; // seconds between two checks for the permission

} // namespace

AppDelegate::AppDelegate(SharedInstances &instances)
    : shelf(instances.platform, instances.settings(), instances.notifications())
    , cursorShelf(instances.platform)
    , shared(instances)
    , platform(instances.platform)
{
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching()
{
    AppSettings &settings = shared.settings();

    platform.menuBar->setMainMenu(buildMainMenu());
    if (settings.get(Settings::showMenuBarIcon))
        setUpStatusItem();

    if (platform.accessibilityTrust->isProcessTrusted())
        startDragMonitor();
    else if (!requestAccessibilityPermission())
        return;

    shared.screenshotWatcher().onNewScreenshot = whileAlive(this, [this](const QUrl &file) {
        shelf.addItem(file);
        showShelf();
    });
    if (settings.get(Settings::autoAddScreenshots))
        shared.screenshotWatcher().start();

    NotificationCenter &notifications = shared.notifications();
    notifications.observe(Notifications::openPreferences, this, [this](const QVariantMap &) { openPreferences(); });
    notifications.observe(Notifications::settingsChanged, this,
                          [this](const QVariantMap &) { handleSettingsChanged(); });
    notifications.observe(Notifications::appearancePaneActive, this,
                          [this](const QVariantMap &userInfo) { handleAppearancePaneActive(userInfo); });

    synchronizeLoginItem();

    shelf.onContextMenu = whileAlive(this, [this](const QPoint &place) { openShelfMenu(place); });
    shelf.onDropReceived = whileAlive(this, [this] { dropReceivedOnShelf = true; });
    // The cursor shelf never shows without the shelf.
    cursorShelf.onDrop = whileAlive(this, [this](const QList<QUrl> &urls) {
        dropReceivedOnShelf = true;
        for (const QUrl &url : urls)
            shelf.addItem(url);
    });
    platform.screens->onChange = whileAlive(this, [this] {
        if (shelf.isVisible() || proximityMonitor)
            shelf.updateFrame();
    });

    if (!settings.get(Settings::hasShownUpdatePrompt)) {
        // Set the flag first: if the program ends during the question, it does not ask again.
        settings.set(Settings::hasShownUpdatePrompt, true);
        settings.defaults.synchronize();
        if (!askAboutUpdateChecks())
            return;
    }
    if (settings.get(Settings::autoCheckUpdates))
        shared.updateChecker().check(WhenUpToDate::SayNothing);
}

void AppDelegate::setUpStatusItem()
{
    statusItem = platform.statusBar->createItem();
    statusItem->setSymbol(QStringLiteral("tray.and.arrow.down"), QStringLiteral("Parklet"));
    statusItem->setMenu(makeStatusMenu(*this, shared.settings().get(Settings::launchAtLogin)));
}

void AppDelegate::startDragMonitor()
{
    shared.dragMonitor().delegate = this;
    shared.dragMonitor().start();
}

// False when the user quit the program instead of answering.
bool AppDelegate::requestAccessibilityPermission()
{
    const auto wantsSettings = LaunchQuestions::askForAccessibility(platform);
    if (!wantsSettings)
        return false;
    if (*wantsSettings)
        platform.accessibilityTrust->openAccessibilitySettings();

    accessibilityTimer = platform.mainQueue->every(kTrustPollInterval, whileAlive(this, [this] {
                                                       if (!platform.accessibilityTrust->isProcessTrusted())
                                                           return;
                                                       accessibilityTimer->invalidate();
                                                       accessibilityTimer.reset();
                                                       startDragMonitor();
                                                   }));
    return true;
}

// False when the user quit the program instead of answering.
bool AppDelegate::askAboutUpdateChecks()
{
    const auto wantsChecks = LaunchQuestions::askAboutUpdateChecks(platform);
    if (!wantsChecks)
        return false;
    shared.settings().set(Settings::autoCheckUpdates, *wantsChecks);
    return true;
}

// A shelf that fades out counts as hidden.
bool AppDelegate::isShelfShown() const
{
    return shelf.isVisible() && !shelf.isHiding();
}

void AppDelegate::showShelf()
{
    if (!isShelfShown())
        shelf.show(Animated::Yes);
}

void AppDelegate::performAction(const QString &name)
{
    if (name == QLatin1String("show-shelf"))
        toggleShelf();
    else if (name == QLatin1String("add-from-clipboard"))
        addFromClipboard();
    else if (name == QLatin1String("preferences"))
        openPreferences();
    else if (name == QLatin1String("check-for-updates"))
        checkForUpdates();
    else if (name == QLatin1String("quit"))
        QCoreApplication::quit();
}

void AppDelegate::toggleShelf()
{
    if (isShelfShown())
        shelf.hide(Animated::Yes);
    else
        shelf.show(Animated::Yes);
}

void AppDelegate::openShelfMenu(const QPoint &place)
{
    shelfMenu = makeShelfMenu(*this);
    shelfMenu->popup(place);
}

void AppDelegate::addFromClipboard()
{
    platform.generalPasteboard->readFileURLs(whileAlive(this, [this](const QList<QUrl> &urls) {
        if (urls.isEmpty())
            return;
        for (const QUrl &url : urls)
            shelf.addItem(url);
        showShelf();
    }));
}

void AppDelegate::openPreferences()
{
    shared.preferences().showWindow();
}

void AppDelegate::checkForUpdates()
{
    shared.updateChecker().check(WhenUpToDate::SaySo);
}

void AppDelegate::openMoreApps()
{
    platform.workspace->open(BuildInfo::checkedMoreAppsURL(shared.moreAppsURL));
}

void AppDelegate::toggleLaunchAtLogin()
{
    AppSettings &settings = shared.settings();
    settings.set(Settings::launchAtLogin, !settings.get(Settings::launchAtLogin));
    synchronizeLoginItem();
    if (!statusItem)
        return;
    // The old menu is still calling this slot, so replace it later.
    platform.mainQueue->async(this, [this] {
        if (statusItem)
            statusItem->setMenu(makeStatusMenu(*this, shared.settings().get(Settings::launchAtLogin)));
    });
}

void AppDelegate::synchronizeLoginItem()
{
    const bool wanted = shared.settings().get(Settings::launchAtLogin);
    if (wanted == platform.loginItem->isEnabled())
        return;
    // When the desktop refuses, the setting stays as the user set it.
    if (wanted)
        platform.loginItem->enable();
    else
        platform.loginItem->disable();
}

void AppDelegate::handleSettingsChanged()
{
    AppSettings &settings = shared.settings();
    shelf.applySettings();

    if (settings.get(Settings::showMenuBarIcon) && !statusItem)
        setUpStatusItem();
    else if (!settings.get(Settings::showMenuBarIcon))
        statusItem.reset();

    const bool showsDockIcon = settings.get(Settings::showDockIcon);
    const bool preferencesVisible = shared.isPreferencesWindowVisible();
    platform.activationPolicy->set(showsDockIcon ? ActivationPolicy::Policy::Regular
                                                 : ActivationPolicy::Policy::Accessory);
    if (preferencesVisible) {
        // The change of policy can move the window behind others.
        platform.mainQueue->async(this, [this] { shared.preferences().showWindowAgain(); });
    }

    if (settings.get(Settings::autoAddScreenshots))
        shared.screenshotWatcher().start();
    else
        shared.screenshotWatcher().stop();
}

void AppDelegate::handleAppearancePaneActive(const QVariantMap &userInfo)
{
    const QVariant active = userInfo.value(QStringLiteral("active"));
    if (active.typeId() == QMetaType::Bool && active.toBool()) {
        shelfWasVisibleBeforeAppearancePane = isShelfShown();
        if (!shelfWasVisibleBeforeAppearancePane)
            shelf.show(Animated::Yes);
    } else if (!shelfWasVisibleBeforeAppearancePane) {
        shelf.hide(Animated::Yes);
    }
}
