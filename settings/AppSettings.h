// SPDX-License-Identifier: MIT
#pragma once

#include "platform/UserDefaults.h"

#include <QColor>
#include <QString>

class ColorArchive;
class SystemAppearance;

// The keys of the settings store. Those without a property below are read from the store directly, where an absent
// key is false, 0 or empty; that zero is the intended default of each.
namespace SettingsKey {
inline const QString autoShowDropWindow = QStringLiteral("autoShowDropWindow");
inline const QString autoShowTrigger = QStringLiteral("autoShowTrigger");
inline const QString excludeMode = QStringLiteral("excludeMode");
inline const QString excludedBundleIDs = QStringLiteral("excludedBundleIDs");
inline const QString doubleClickAction = QStringLiteral("doubleClickAction");
inline const QString removeItemsWhenDraggedOut = QStringLiteral("removeItemsWhenDraggedOut");
inline const QString autoAddScreenshots = QStringLiteral("autoAddScreenshots");
inline const QString dragMode = QStringLiteral("dragMode");
inline const QString showMenuBarIcon = QStringLiteral("showMenuBarIcon");
inline const QString showDockIcon = QStringLiteral("showDockIcon");
inline const QString launchAtLogin = QStringLiteral("launchAtLogin");
inline const QString tintColorData = QStringLiteral("tintColorData");
inline const QString tintIntensity = QStringLiteral("tintIntensity");
inline const QString shelfItemSize = QStringLiteral("shelfItemSize");
inline const QString windowEdge = QStringLiteral("windowEdge");
inline const QString windowAlignment = QStringLiteral("windowAlignment");
inline const QString fileNameDisplay = QStringLiteral("fileNameDisplay");
inline const QString hideFileExtensions = QStringLiteral("hideFileExtensions");
inline const QString disableAnimations = QStringLiteral("disableAnimations");
inline const QString autoHideTimeout = QStringLiteral("autoHideTimeout");
inline const QString skipClearAllConfirmation = QStringLiteral("skipClearAllConfirmation");
inline const QString hasShownUpdatePrompt = QStringLiteral("hasShownUpdatePrompt");
inline const QString autoCheckUpdates = QStringLiteral("autoCheckUpdates");
} // namespace SettingsKey

// The one place where the preferences live: typed properties with built-in defaults over the user-defaults store.
// Nothing is cached, a value of the wrong type reads as the default, and writing a property posts nothing.
class AppSettings {
public:
    AppSettings(UserDefaults &store, const ColorArchive &colorArchive, const SystemAppearance &appearance);

    UserDefaults &defaults;

    bool autoShowDropWindow() const;
    void setAutoShowDropWindow(bool value);

    bool autoAddScreenshots() const;
    void setAutoAddScreenshots(bool value);

    bool removeItemsWhenDraggedOut() const;
    void setRemoveItemsWhenDraggedOut(bool value);

    int doubleClickAction() const;
    void setDoubleClickAction(int value);

    bool showMenuBarIcon() const;
    void setShowMenuBarIcon(bool value);

    bool showDockIcon() const;
    void setShowDockIcon(bool value);

    bool launchAtLogin() const;
    void setLaunchAtLogin(bool value);

    // The system accent colour when none is stored or the stored data holds no colour.
    QColor tintColor() const;
    // A colour that cannot be archived removes the stored one.
    void setTintColor(const QColor &value);

    double tintIntensity() const;
    void setTintIntensity(double value);

    // Points.
    double shelfItemSize() const;
    void setShelfItemSize(double value);

    int windowEdge() const;
    void setWindowEdge(int value);

    int windowAlignment() const;
    void setWindowAlignment(int value);

    // Seconds; 0 arms no timer.
    double autoHideTimeout() const;
    void setAutoHideTimeout(double value);

private:
    // The stored number, or `fallback` when the key is absent or holds no number.
    double numberOr(const QString &key, double fallback) const;

    const ColorArchive &colorArchive;
    const SystemAppearance &appearance;
};
