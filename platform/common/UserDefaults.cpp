// SPDX-License-Identifier: MIT
#include "platform/UserDefaults.h"

#include <cmath>
#include <limits>

bool UserDefaults::isNumber(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Float:
    case QMetaType::Double:
        return true;
    default:
        return false;
    }
}

bool UserDefaults::boolean(const QString &key) const
{
    return number(key) != 0.0;
}

qint64 UserDefaults::integer(const QString &key) const
{
    const double value = number(key);
    // A double this large has no exact integer; casting one out of range would be undefined.
    constexpr double kLimit = 9.0e18;
    if (std::isnan(value) || std::abs(value) > kLimit)
        return 0;
    return static_cast<qint64>(value);
}

double UserDefaults::number(const QString &key) const
{
    const QVariant value = object(key);
    return isNumber(value) ? value.toDouble() : 0.0;
}

QByteArray UserDefaults::data(const QString &key) const
{
    const QVariant value = object(key);
    return value.typeId() == QMetaType::QByteArray ? value.toByteArray() : QByteArray();
}

QStringList UserDefaults::stringArray(const QString &key) const
{
    const QVariant value = object(key);
    if (value.typeId() == QMetaType::QStringList)
        return value.toStringList();
    if (value.typeId() != QMetaType::QVariantList)
        return {};
    QStringList strings;
    for (const QVariant &entry : value.toList()) {
        if (entry.typeId() != QMetaType::QString)
            return {};
        strings.append(entry.toString());
    }
    return strings;
}
