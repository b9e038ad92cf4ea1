// SPDX-License-Identifier: MIT
#include "settings/AppSettings.h"

#include "platform/ColorArchive.h"
#include "platform/SystemAppearance.h"

#include <limits>

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

qint64 AppSettings::choice(const QString &key, qint64 fallback, ReadAs readAs) const
{
    if (readAs == ReadAs::Stored)
        return defaults.integer(key);
    const double value = numberOr(key, static_cast<double>(fallback));
    if (!(value >= std::numeric_limits<int>::min() && value <= std::numeric_limits<int>::max()))
        return fallback;
    return static_cast<qint64>(value);
}

bool AppSettings::get(const Setting<bool> &setting) const
{
    return setting.readAs == ReadAs::Stored ? defaults.boolean(setting.key)
                                            : numberOr(setting.key, setting.fallback) != 0.0;
}

double AppSettings::get(const Setting<double> &setting) const
{
    return setting.readAs == ReadAs::Stored ? defaults.number(setting.key) : numberOr(setting.key, setting.fallback);
}

QStringList AppSettings::get(const Setting<QStringList> &setting) const
{
    return defaults.stringArray(setting.key);
}

void AppSettings::set(const Setting<bool> &setting, bool value)
{
    defaults.set(setting.key, value);
}

void AppSettings::set(const Setting<double> &setting, double value)
{
    defaults.set(setting.key, value);
}

void AppSettings::set(const Setting<QStringList> &setting, const QStringList &value)
{
    defaults.set(setting.key, QVariantList(value.begin(), value.end()));
}

QColor AppSettings::tintColor() const
{
    const QByteArray data = defaults.data(Settings::tintColorData.key);
    if (!data.isEmpty()) {
        if (const auto color = colorArchive.unarchive(data))
            return *color;
    }
    return appearance.accentColor();
}

void AppSettings::setTintColor(const QColor &value)
{
    if (const auto data = colorArchive.archive(value))
        defaults.set(Settings::tintColorData.key, *data);
    else
        defaults.remove(Settings::tintColorData.key);
}
