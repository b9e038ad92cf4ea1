// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVariant>

// The application's persistent key-value store; the Mac calls it user defaults. Values are bool, double, QString,
// QVariantList and QByteArray; an integer reads as a whole double. A key that was never written is absent. A read sees
// every earlier set() and every edit from outside. Writes reach the disk soon, at the latest before the program ends;
// when the disk refuses one, the stored value stays.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    // The stored value, or an invalid QVariant when the key is absent.
    virtual QVariant object(const QString &key) const = 0;

    // Stores `value`; an invalid one removes the key. False when the store cannot hold the value.
    virtual bool set(const QString &key, const QVariant &value) = 0;

    virtual bool remove(const QString &key) = 0;

    // Waits until every value is safely on the disk, or the disk has refused it. A store that writes at once has
    // nothing to wait for.
    virtual void synchronize() {}

    // While one exists, reads may miss new edits from outside, so that many reads cost as much as one and fit together.
    // They still see every set() of this program.
    class ReadsOfOneMoment {
    public:
        explicit ReadsOfOneMoment(const UserDefaults &store)
            : defaults(store)
        {
            defaults.beginMoment();
        }
        ~ReadsOfOneMoment() { defaults.endMoment(); }
        ReadsOfOneMoment(const ReadsOfOneMoment &) = delete;
        ReadsOfOneMoment &operator=(const ReadsOfOneMoment &) = delete;

    private:
        const UserDefaults &defaults;
    };

    // Whether a read takes `value` as a number. A bool is one.
    static bool isNumber(const QVariant &value);

    // The store's own typed reads: false, 0 or empty when the key is absent or of another type. A number reads as its
    // truth value, and a bool as 0 or 1. A string is another type, except in the Mac's store, which reads the number or
    // truth value in it ("3", "YES").
    virtual bool boolean(const QString &key) const;
    virtual qint64 integer(const QString &key) const;
    virtual double number(const QString &key) const;
    virtual QByteArray data(const QString &key) const;
    // Empty unless the value is an array of strings only.
    virtual QStringList stringArray(const QString &key) const;

protected:
    // Moments nest. A store with cheap reads does nothing.
    virtual void beginMoment() const {}
    virtual void endMoment() const {}
};
