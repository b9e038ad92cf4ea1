// SPDX-License-Identifier: MIT
#pragma once

#include "platform/UserDefaults.h"
#include "platform/linux/files/DurableFile.h"

#include <QJsonObject>

#include <functional>
#include <optional>

// The store as one JSON file, a flat object that a user can edit. Data is {"base64": "..."}. Several programs may write
// it: each change is read, made and written under a lock on the file's folder.
class JsonUserDefaults : public UserDefaults {
public:
    // parklet/settings.json in the user's configuration folder.
    static QString defaultPath();

    explicit JsonUserDefaults(const QString &path = defaultPath());

    QVariant object(const QString &key) const override;
    // The same as of the last read or write, without a look at the file.
    QVariant lastObject(const QString &key) const;
    // Durable when it returns true; false when the file could not be written, which leaves it as it was.
    bool set(const QString &key, const QVariant &value) override;
    bool remove(const QString &key) override;

    // All of `changes` in one write, which takes as long as that of one; an invalid value removes its key.
    bool set(const QHash<QString, QVariant> &changes);

    // `value` as a read will answer it; invalid when JSON cannot hold it.
    static QVariant asStored(const QVariant &value);

private:
    enum class State {
        Absent,
        Whole,
        Invalid,    // no JSON object
        Unreadable, // not ours to read or no file at all; never written over
    };

    void refresh() const;
    State read() const;
    bool keepInvalidAside() const;
    bool change(const std::function<void(QJsonObject &)> &edit);

    QByteArray path;

    // What the file held when it was last read.
    mutable QByteArray contents;
    mutable QJsonObject values;
    mutable State state = State::Absent;
    mutable std::optional<FileIdentity> identity;
    mutable bool settled = false; // an edit since then cannot have left the same identity
};
