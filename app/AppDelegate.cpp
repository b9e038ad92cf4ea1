// SPDX-License-Identifier: MIT
#include "app/AppDelegate.h"

#include "app/MainMenu.h"
#include "app/SharedInstances.h"
#include "platform/Platform.h"
#include "settings/BuildInfo.h"

#include <QCoreApplication>
#include <QEvent>
#include <QMenu>

namespace {

constexpr double kTrustPollInterval = 5.0; // seconds between two looks whether the permission was granted

// Notices that the application is asked to quit while a question is on screen. The question goes away as if it had been
// closed, and the next one would not even be shown: the main loop is about to end.
class QuitWatch : public QObject {
public:
    QuitWatch() { qApp->installEventFilter(this); }

    bool quits = false;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        quits = quits || (watched == qApp && event->type() == QEvent::Quit);
        return false;
    }
};

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
    const QPointer<AppDelegate> delegate(this);

    platform.menuBar->setMainMenu(buildMainMenu());
    if (settings.get(Settings::showMenuBarIcon))
        setUpStatusItem();

    if (platform.accessibilityTrust->isProcessTrusted())
        startDragMonitor();
    else if (!requestAccessibilityPermission())
        return;

    shared.screenshotWatcher().onNewScreenshot = [delegate](const QUrl &file) {
        if (!delegate)
            return;
        delegate->shelf.addItem(file);
        delegate->showShelf();
    };
    if (settings.get(Settings::autoAddScreenshots))
        shared.screenshotWatcher().start();

    NotificationCenter &notifications = shared.notifications();
    notifications.observe(Notifications::openPreferences, this, [this](const QVariantMap &) { openPreferences(); });
    notifications.observe(Notifications::settingsChanged, this,
                          [this](const QVariantMap &) { handleSettingsChanged(); });
    notifications.observe(Notifications::appearancePaneActive, this,
                          [this](const QVariantMap &userInfo) { handleAppearancePaneActive(userInfo); });

    synchronizeLoginItem();

    shelf.onDropReceived = [delegate] {
        if (delegate)
            delegate->dropReceivedOnShelf = true;
    };
    // The shelf itself is on screen already when the cursor shelf is.
    cursorShelf.onDrop = [delegate](const QList<QUrl> &urls) {
        if (!delegate)
            return;
        delegate->dropReceivedOnShelf = true;
        for (const QUrl &url : urls)
            delegate->shelf.addItem(url);
    };
    platform.screens->onChange = [delegate] {
        if (delegate && (delegate->shelf.isVisible() || delegate->proximityMonitor))
            delegate->shelf.updateFrame();
    };

    if (!settings.get(Settings::hasShownUpdatePrompt)) {
        // The flag comes first, so that a question which was cut short is not asked again.
        settings.set(Settings::hasShownUpdatePrompt, true);
        settings.defaults.synchronize();
        if (!askAboutUpdateChecks())
            return;
    }
    if (settings.get(Settings::autoCheckUpdates))
        shared.updateChecker().check(true);
}

void AppDelegate::setUpStatusItem()
{
    statusItem = platform.statusBar->createItem();
    statusItem->setSymbol(QStringLiteral("tray.and.arrow.down"), QStringLiteral("Parklet"));
    statusItem->setMenu(buildStatusMenu());
}

std::unique_ptr<QMenu> AppDelegate::buildStatusMenu()
{
    auto menu = std::make_unique<QMenu>();
    menu->addAction(QStringLiteral("Parklet"))->setEnabled(false);
    menu->addSeparator();
    menu->addAction(tr("Add From Clipboard"), this, &AppDelegate::addFromClipboard);
    menu->addSeparator();
    menu->addAction(tr("Show Shelf"), this, &AppDelegate::toggleShelf);
    menu->addSeparator();
    menu->addAction(tr("Preferences…"), this, &AppDelegate::openPreferences)->setShortcut(Qt::CTRL | Qt::Key_Comma);
    menu->addAction(tr("Check for Updates…"), this, &AppDelegate::checkForUpdates);
    menu->addAction(tr("More from Orvane"), this, &AppDelegate::openMoreApps);
    menu->addSeparator();
    QAction *launchAtLogin = menu->addAction(tr("Launch at Login"), this, &AppDelegate::toggleLaunchAtLogin);
    launchAtLogin->setCheckable(true);
    launchAtLogin->setChecked(shared.settings().get(Settings::launchAtLogin));
    menu->addSeparator();
    menu->addAction(tr("Quit Parklet"), qApp, &QCoreApplication::quit)->setShortcut(Qt::CTRL | Qt::Key_Q);
    return menu;
}

void AppDelegate::startDragMonitor()
{
    shared.dragMonitor().delegate = this;
    shared.dragMonitor().start();
}

// False when the application was quit instead of an answer.
bool AppDelegate::requestAccessibilityPermission()
{
    QuitWatch watch;
    Alert alert;
    alert.messageText = tr("Accessibility Permission Required");
    alert.informativeText = tr("Parklet needs Accessibility access to detect when you're dragging files. "
                               "Please grant access in System Settings.");
    alert.buttons = {tr("Open System Settings"), tr("Later")};
    alert.activates = false;
    const AlertAnswer answer = platform.alerts->runModal(alert);
    if (watch.quits)
        return false;
    if (answer.isFirstButton())
        platform.accessibilityTrust->openAccessibilitySettings();

    accessibilityTimer = platform.mainQueue->every(kTrustPollInterval, [delegate = QPointer<AppDelegate>(this)] {
        if (!delegate || !delegate->platform.accessibilityTrust->isProcessTrusted())
            return;
        delegate->accessibilityTimer->invalidate();
        delegate->accessibilityTimer.reset();
        delegate->startDragMonitor();
    });
    return true;
}

// False when the application was quit instead of an answer.
bool AppDelegate::askAboutUpdateChecks()
{
    QuitWatch watch;
    Alert alert;
    alert.icon = platform.appearance->applicationIcon();
    alert.messageText = tr("Check for updates automatically?");
    alert.informativeText = tr("Should Parklet automatically check for updates? "
                               "You can always check manually from the Parklet menu.");
    // The check box reassures; its state changes no setting.
    alert.checkboxTitle = tr("Automatically download and install updates");
    alert.buttons = {tr("Check Automatically"), tr("Don't Check")};
    alert.dark = true;
    const AlertAnswer answer = platform.alerts->runModal(alert);
    if (watch.quits)
        return false;
    shared.settings().set(Settings::autoCheckUpdates, answer.isFirstButton());
    return true;
}

// A shelf that is fading out is on its way off the screen and no longer counts.
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
        showShelf();
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

void AppDelegate::addFromClipboard()
{
    const QList<QUrl> urls = platform.generalPasteboard->fileURLs();
    if (urls.isEmpty())
        return;
    for (const QUrl &url : urls)
        shelf.addItem(url);
    showShelf();
}

void AppDelegate::openPreferences()
{
    shared.preferences().showWindow();
}

void AppDelegate::checkForUpdates()
{
    shared.updateChecker().check(false);
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
    // This runs out of the very menu that is replaced.
    platform.mainQueue->async([delegate = QPointer<AppDelegate>(this)] {
        if (delegate && delegate->statusItem)
            delegate->statusItem->setMenu(delegate->buildStatusMenu());
    });
}

void AppDelegate::synchronizeLoginItem()
{
    const bool wanted = shared.settings().get(Settings::launchAtLogin);
    if (wanted == platform.loginItem->isEnabled())
        return;
    // A refusal leaves the setting as the user set it.
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
        // The change of policy can take the window away from the front.
        platform.mainQueue->async([delegate = QPointer<AppDelegate>(this)] {
            if (delegate)
                delegate->shared.preferences().showWindowAgain();
        });
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
