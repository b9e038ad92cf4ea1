// SPDX-License-Identifier: MIT
#pragma once

#include "platform/UserDefaults.h"
#include "platform/linux/files/DurableFile.h"

#include <QJsonObject>

#include <atomic>
#include <functional>
#include <optional>

// The store as one JSON file: a flat object that the user can edit. Data is {"base64": "..."}. Several programs may
// write it: each change reads, modifies and writes the file under a lock on its folder.
class JsonUserDefaults : public UserDefaults {
public:
    // parklet/settings.json in the user's configuration folder.
    static QString defaultPath();

    explicit JsonUserDefaults(const QString &path = defaultPath());

    QVariant object(const QString &key) const override;
    // The value at the last read or write. Does not check the file.
    QVariant lastObject(const QString &key) const;
    // Durable when it returns true. False when the file could not be written; it is then unchanged.
    bool set(const QString &key, const QVariant &value) override;
    bool remove(const QString &key) override;

    // Stores all of `changes` in one write. An invalid value removes its key.
    bool set(const QHash<QString, QVariant> &changes);

    // Has changes wait for other programs no longer than a program that ends can; before, they wait for ten seconds.
    void hurry() { lockAttempts = kHurriedAttempts; }
    // Whether the last change was refused because another program held the lock.
    bool wasLockedOut() const { return isLockedOut; }
    // Whether a change has been waiting for another program for so long that nobody should wait for it.
    bool isKeptWaiting() const { return failedAttempts >= kHurriedAttempts; }

    // Removes what a program that was killed in the middle of a write has left.
    void removeUnfinished() const;

    // `value` as a read will answer it; invalid when JSON cannot hold it.
    static QVariant asStored(const QVariant &value);

private:
    enum class State {
        Absent,
        Whole,
        Invalid,    // no JSON object
        Unreadable, // no permission, or no regular file; never overwritten
    };

    void refresh() const;
    State read() const;
    bool keepInvalidAside() const;
    bool change(const std::function<void(QJsonObject &)> &edit);

    static constexpr int kAttempts = 1000;
    static constexpr int kHurriedAttempts = 50;

    QByteArray path;
    std::atomic<int> lockAttempts = kAttempts; // ten milliseconds apart
    std::atomic<int> failedAttempts = 0;       // of the change under way
    std::atomic<bool> isLockedOut = false;

    // The contents of the file at the last read.
    mutable QByteArray contents;
    mutable QJsonObject values;
    mutable State state = State::Absent;
    mutable std::optional<FileIdentity> identity;
    mutable bool settled = false; // an edit since then would have changed the identity
};
