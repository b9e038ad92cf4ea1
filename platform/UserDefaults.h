// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVariant>

// The application's persistent key-value store. Values are bool, double, QString, QVariantList and QByteArray
// (data); integers come back as whole doubles. A key never written is absent. What was set is answered by the next read
// and reaches the disk soon after, at the latest before the program ends; a write that the disk refuses leaves the
// stored value as it was. An edit from outside is seen by the next read.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    // The stored value, or an invalid QVariant when the key is absent.
    virtual QVariant object(const QString &key) const = 0;

    // Stores `value`; an invalid one removes the key. False when the store knows that it cannot hold it.
    virtual bool set(const QString &key, const QVariant &value) = 0;

    virtual bool remove(const QString &key) = 0;

    // Waits until everything that was set is on the disk, where it survives the end of this program however that
    // comes, or has been refused by the disk. A store that writes at once has nothing to wait for.
    virtual void synchronize() {}

    // While one lives, a read need not look for edits from outside that an earlier read did not see: many reads for the
    // price of one, and all of one moment. What this program sets is answered by the next read all the same.
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

    // Whether a read takes `value` for a number; a bool is one.
    static bool isNumber(const QVariant &value);

    // The store's own typed reads: false, 0 or empty when the key is absent or of another type. A number reads as
    // its truth value, and a bool as 0 or 1. A string counts as another type, except in a
    // store that, as the Mac's does, reads the number or the truth value written in it ("3", "YES").
    virtual bool boolean(const QString &key) const;
    virtual qint64 integer(const QString &key) const;
    virtual double number(const QString &key) const;
    virtual QByteArray data(const QString &key) const;
    // Empty unless the value is an array of nothing but strings.
    virtual QStringList stringArray(const QString &key) const;

protected:
    // Moments nest. A store whose reads are cheap anyway has nothing to do.
    virtual void beginMoment() const {}
    virtual void endMoment() const {}
};
