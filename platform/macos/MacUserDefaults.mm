// SPDX-License-Identifier: MIT
#include "platform/macos/MacUserDefaults.h"

#include "platform/macos/MacConversions.h"

#import <Foundation/Foundation.h>

namespace {

NSUserDefaults *store()
{
    return NSUserDefaults.standardUserDefaults;
}

bool isTruthValue(NSNumber *number)
{
    return CFGetTypeID((__bridge CFTypeRef)number) == CFBooleanGetTypeID();
}

// An invalid value for types that the program never stores, such as a date.
QVariant fromPropertyList(id value)
{
    if ([value isKindOfClass:[NSNumber class]])
        return isTruthValue(value) ? QVariant([value boolValue] == YES) : QVariant([value doubleValue]);
    if ([value isKindOfClass:[NSString class]])
        return fromNSString(value);
    if ([value isKindOfClass:[NSData class]])
        return QByteArray::fromNSData(value);
    if (![value isKindOfClass:[NSArray class]])
        return {};
    QVariantList list;
    for (id entry in static_cast<NSArray *>(value))
        list.append(fromPropertyList(entry));
    return list;
}

// Nil for types that a property list cannot have.
id toPropertyList(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return @(value.toBool());
    case QMetaType::Int:
    case QMetaType::LongLong:
        return @(value.toLongLong());
    case QMetaType::Float:
    case QMetaType::Double:
        return @(value.toDouble());
    case QMetaType::QString:
        return toNSString(value.toString());
    case QMetaType::QByteArray:
        return value.toByteArray().toNSData();
    case QMetaType::QStringList:
    case QMetaType::QVariantList: {
        NSMutableArray *array = [NSMutableArray array];
        for (const QVariant &entry : value.toList()) {
            id converted = toPropertyList(entry);
            if (!converted)
                return nil;
            [array addObject:converted];
        }
        return array;
    }
    default:
        return nil;
    }
}

} // namespace

QVariant MacUserDefaults::object(const QString &key) const
{
    return fromPropertyList([store() objectForKey:toNSString(key)]);
}

bool MacUserDefaults::set(const QString &key, const QVariant &value)
{
    if (!value.isValid())
        return remove(key);
    id converted = toPropertyList(value);
    if (!converted)
        return false;
    [store() setObject:converted forKey:toNSString(key)];
    return true;
}

bool MacUserDefaults::remove(const QString &key)
{
    [store() removeObjectForKey:toNSString(key)];
    return true;
}

void MacUserDefaults::synchronize()
{
    CFPreferencesAppSynchronize(kCFPreferencesCurrentApplication);
}

bool MacUserDefaults::boolean(const QString &key) const
{
    return [store() boolForKey:toNSString(key)];
}

qint64 MacUserDefaults::integer(const QString &key) const
{
    return [store() integerForKey:toNSString(key)];
}

double MacUserDefaults::number(const QString &key) const
{
    return [store() doubleForKey:toNSString(key)];
}

QByteArray MacUserDefaults::data(const QString &key) const
{
    NSData *data = [store() dataForKey:toNSString(key)];
    return data ? QByteArray::fromNSData(data) : QByteArray();
}

QStringList MacUserDefaults::stringArray(const QString &key) const
{
    QStringList strings;
    // The store also returns a list of numbers, as strings, but that is not a list of strings.
    for (id entry in [store() arrayForKey:toNSString(key)]) {
        if (![entry isKindOfClass:[NSString class]])
            return {};
        strings.append(fromNSString(entry));
    }
    return strings;
}
