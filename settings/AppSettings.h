// SPDX-License-Identifier: MIT
#pragma once

#include "platform/UserDefaults.h"
#include "settings/SettingsTable.h"

#include <QColor>

#include <type_traits>

class ColorArchive;
class SystemAppearance;

// Reads and writes the rows of SettingsTable.h in the user-defaults store. It caches nothing, treats a value of the
// wrong type as absent, and posts no notification.
class AppSettings {
public:
    AppSettings(UserDefaults &store, const ColorArchive &colorArchive, const SystemAppearance &appearance);

    // For ReadsOfOneMoment and synchronize(); values go through get() and set().
    UserDefaults &defaults;

    bool get(const Setting<bool> &setting) const;
    double get(const Setting<double> &setting) const;
    QStringList get(const Setting<QStringList> &setting) const;
    template<typename Choice>
    requires std::is_enum_v<Choice> Choice get(const Setting<Choice> &setting)
    const { return static_cast<Choice>(choice(setting.key, static_cast<qint64>(setting.fallback), setting.readAs)); }

    void set(const Setting<bool> &setting, bool value);
    void set(const Setting<double> &setting, double value);
    void set(const Setting<QStringList> &setting, const QStringList &value);
    template<typename Choice>
    requires std::is_enum_v<Choice>
    void set(const Setting<Choice> &setting, Choice value) { defaults.set(setting.key, static_cast<int>(value)); }

    // The colour in tintColorData; the system accent colour when none is stored or the stored data holds no colour.
    QColor tintColor() const;
    // A colour that cannot be archived removes the stored one.
    void setTintColor(const QColor &value);

private:
    // The stored number, or `fallback` when the key is absent or holds no number.
    double numberOr(const QString &key, double fallback) const;
    qint64 choice(const QString &key, qint64 fallback, ReadAs readAs) const;

    const ColorArchive &colorArchive;
    const SystemAppearance &appearance;
};
