// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

// The settings: one row for each, and the names of the values that a choice has. AppSettings reads and writes them;
// check.settings compares this file with the tables in README.md.

// A choice is stored as its number. An unknown number is kept.
enum class AutoShowTrigger : qint64 { AtOnce, NearCursor, WhenNear }; // any other: the shelf does not show by itself
enum class ExcludeMode : qint64 { HideInListed, ShowOnlyInListed };   // any other: no program is excluded
enum class DoubleClickAction : qint64 { OpenFile, SelectAll };        // any other: as SelectAll
enum class DragMode : qint64 { Copy, Move, Link };                    // any other: as Copy
enum class WindowEdge : qint64 { Left, Right, Top, Bottom };          // any other: as Right
enum class WindowAlignment : qint64 { Start, Center, End };           // any other: as Center
enum class FileNameDisplay : qint64 { UnderIcon, Hidden, OnHover };   // any other: as UnderIcon

// What is read when the key is absent or holds a value of another type.
enum class ReadAs {
    Property, // the fallback; a string is of another type in every store
    Stored,   // false, 0 or empty, by the store's own read; the Mac's store also reads the number in a string
};

// Whether the preferences post settingsChanged after they have stored it. A setting that is read only when it is needed
// is not announced.
enum class Announced { No, Yes };

struct Range {
    double lowest = 0.0;
    double highest = 0.0;
};

template<typename T>
struct Setting {
    QString key;
    T fallback;
    ReadAs readAs = ReadAs::Property;
    Announced announced = Announced::No;
    Range range = {}; // of the slider in the preferences; a stored value may lie outside
};

namespace Settings {

using namespace Qt::StringLiterals;

// When the shelf shows
inline const Setting<bool> autoShowDropWindow{.key = u"autoShowDropWindow"_s, .fallback = true};
inline const Setting<AutoShowTrigger> autoShowTrigger{
    .key = u"autoShowTrigger"_s, .fallback = AutoShowTrigger::AtOnce, .readAs = ReadAs::Stored};
inline const Setting<ExcludeMode> excludeMode{
    .key = u"excludeMode"_s, .fallback = ExcludeMode::HideInListed, .readAs = ReadAs::Stored};
inline const Setting<QStringList> excludedBundleIDs{
    .key = u"excludedBundleIDs"_s, .fallback = {}, .readAs = ReadAs::Stored};

// What its files do
inline const Setting<DoubleClickAction> doubleClickAction{.key = u"doubleClickAction"_s,
                                                          .fallback = DoubleClickAction::SelectAll};
inline const Setting<bool> removeItemsWhenDraggedOut{.key = u"removeItemsWhenDraggedOut"_s, .fallback = true};
inline const Setting<DragMode> dragMode{.key = u"dragMode"_s, .fallback = DragMode::Copy, .readAs = ReadAs::Stored};
inline const Setting<bool> autoAddScreenshots{.key = u"autoAddScreenshots"_s, .fallback = true};

// The program on its desktop
inline const Setting<bool> showMenuBarIcon{.key = u"showMenuBarIcon"_s, .fallback = true, .announced = Announced::Yes};
inline const Setting<bool> showDockIcon{
    .key = u"showDockIcon"_s, .fallback = false, .readAs = ReadAs::Stored, .announced = Announced::Yes};
inline const Setting<bool> launchAtLogin{.key = u"launchAtLogin"_s, .fallback = false, .readAs = ReadAs::Stored};

// How the shelf looks and where it stands
inline const Setting<QByteArray> tintColorData{
    .key = u"tintColorData"_s, .fallback = {}, .readAs = ReadAs::Stored, .announced = Announced::Yes};
inline const Setting<double> tintIntensity{
    .key = u"tintIntensity"_s, .fallback = 0.4, .announced = Announced::Yes, .range = {0.0, 1.0}};
inline const Setting<double> shelfItemSize{
    .key = u"shelfItemSize"_s, .fallback = 72.0, .announced = Announced::Yes, .range = {48.0, 120.0}};
inline const Setting<WindowEdge> windowEdge{
    .key = u"windowEdge"_s, .fallback = WindowEdge::Right, .announced = Announced::Yes};
inline const Setting<WindowAlignment> windowAlignment{
    .key = u"windowAlignment"_s, .fallback = WindowAlignment::Center, .announced = Announced::Yes};
inline const Setting<FileNameDisplay> fileNameDisplay{.key = u"fileNameDisplay"_s,
                                                      .fallback = FileNameDisplay::UnderIcon,
                                                      .readAs = ReadAs::Stored,
                                                      .announced = Announced::Yes};
inline const Setting<bool> hideFileExtensions{
    .key = u"hideFileExtensions"_s, .fallback = false, .readAs = ReadAs::Stored, .announced = Announced::Yes};

// Questions that were asked
inline const Setting<bool> skipClearAllConfirmation{
    .key = u"skipClearAllConfirmation"_s, .fallback = false, .readAs = ReadAs::Stored};
inline const Setting<bool> hasShownUpdatePrompt{
    .key = u"hasShownUpdatePrompt"_s, .fallback = false, .readAs = ReadAs::Stored};
inline const Setting<bool> autoCheckUpdates{.key = u"autoCheckUpdates"_s, .fallback = false, .readAs = ReadAs::Stored};

// Hidden settings: the shelf reads them, and no control writes them. The timeout is in seconds; 0 starts no timer.
inline const Setting<bool> disableAnimations{
    .key = u"disableAnimations"_s, .fallback = false, .readAs = ReadAs::Stored};
inline const Setting<double> autoHideTimeout{.key = u"autoHideTimeout"_s, .fallback = 0.0};

} // namespace Settings
