// SPDX-License-Identifier: MIT
#include "settings/AppSettings.h"

#include "platform/ColorArchive.h"
#include "platform/SystemAppearance.h"

#include <cmath>
#include <limits>

namespace {

// What each property reads as when its key is absent or mistyped.
constexpr bool kAutoShowDropWindow = true;
constexpr bool kAutoAddScreenshots = true;
constexpr bool kRemoveItemsWhenDraggedOut = true;
constexpr int kDoubleClickAction = 1; // select all
constexpr bool kShowMenuBarIcon = true;
constexpr double kTintIntensity = 0.4;
constexpr double kShelfItemSize = 72.0;
constexpr int kWindowEdge = 1;      // right
constexpr int kWindowAlignment = 1; // centre
constexpr double kAutoHideTimeout = 0.0;

int toInt(double value, int fallback)
{
    if (!(value >= std::numeric_limits<int>::min() && value <= std::numeric_limits<int>::max()))
        return fallback;
    return static_cast<int>(value);
}

} // namespace

AppSettings::AppSettings(UserDefaults &store, const ColorArchive &archive, const SystemAppearance &systemAppearance)
    : defaults(store)
    , colorArchive(archive)
    , appearance(systemAppearance)
{
}

double AppSettings::numberOr(const QString &key, double fallback) const
{
    const QVariant value = defaults.object(key);
    return UserDefaults::isNumber(value) ? value.toDouble() : fallback;
}

bool AppSettings::autoShowDropWindow() const
{
    return numberOr(SettingsKey::autoShowDropWindow, kAutoShowDropWindow) != 0.0;
}

void AppSettings::setAutoShowDropWindow(bool value)
{
    defaults.set(SettingsKey::autoShowDropWindow, value);
}

bool AppSettings::autoAddScreenshots() const
{
    return numberOr(SettingsKey::autoAddScreenshots, kAutoAddScreenshots) != 0.0;
}

void AppSettings::setAutoAddScreenshots(bool value)
{
    defaults.set(SettingsKey::autoAddScreenshots, value);
}

bool AppSettings::removeItemsWhenDraggedOut() const
{
    return numberOr(SettingsKey::removeItemsWhenDraggedOut, kRemoveItemsWhenDraggedOut) != 0.0;
}

void AppSettings::setRemoveItemsWhenDraggedOut(bool value)
{
    defaults.set(SettingsKey::removeItemsWhenDraggedOut, value);
}

int AppSettings::doubleClickAction() const
{
    return toInt(numberOr(SettingsKey::doubleClickAction, kDoubleClickAction), kDoubleClickAction);
}

void AppSettings::setDoubleClickAction(int value)
{
    defaults.set(SettingsKey::doubleClickAction, value);
}

bool AppSettings::showMenuBarIcon() const
{
    return numberOr(SettingsKey::showMenuBarIcon, kShowMenuBarIcon) != 0.0;
}

void AppSettings::setShowMenuBarIcon(bool value)
{
    defaults.set(SettingsKey::showMenuBarIcon, value);
}

bool AppSettings::showDockIcon() const
{
    return defaults.boolean(SettingsKey::showDockIcon);
}

void AppSettings::setShowDockIcon(bool value)
{
    defaults.set(SettingsKey::showDockIcon, value);
}

bool AppSettings::launchAtLogin() const
{
    return defaults.boolean(SettingsKey::launchAtLogin);
}

void AppSettings::setLaunchAtLogin(bool value)
{
    defaults.set(SettingsKey::launchAtLogin, value);
}

QColor AppSettings::tintColor() const
{
    const QByteArray data = defaults.data(SettingsKey::tintColorData);
    if (!data.isEmpty()) {
        if (const auto color = colorArchive.unarchive(data))
            return *color;
    }
    return appearance.accentColor();
}

void AppSettings::setTintColor(const QColor &value)
{
    if (const auto data = colorArchive.archive(value))
        defaults.set(SettingsKey::tintColorData, *data);
    else
        defaults.remove(SettingsKey::tintColorData);
}

double AppSettings::tintIntensity() const
{
    return numberOr(SettingsKey::tintIntensity, kTintIntensity);
}

void AppSettings::setTintIntensity(double value)
{
    defaults.set(SettingsKey::tintIntensity, value);
}

double AppSettings::shelfItemSize() const
{
    return numberOr(SettingsKey::shelfItemSize, kShelfItemSize);
}

void AppSettings::setShelfItemSize(double value)
{
    defaults.set(SettingsKey::shelfItemSize, value);
}

int AppSettings::windowEdge() const
{
    return toInt(numberOr(SettingsKey::windowEdge, kWindowEdge), kWindowEdge);
}

void AppSettings::setWindowEdge(int value)
{
    defaults.set(SettingsKey::windowEdge, value);
}

int AppSettings::windowAlignment() const
{
    return toInt(numberOr(SettingsKey::windowAlignment, kWindowAlignment), kWindowAlignment);
}

void AppSettings::setWindowAlignment(int value)
{
    defaults.set(SettingsKey::windowAlignment, value);
}

double AppSettings::autoHideTimeout() const
{
    return numberOr(SettingsKey::autoHideTimeout, kAutoHideTimeout);
}

void AppSettings::setAutoHideTimeout(double value)
{
    defaults.set(SettingsKey::autoHideTimeout, value);
}
