// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/files/JsonUserDefaults.h"

#include <QHash>
#include <QMutex>
#include <QThreadPool>

// The settings file, with a thread of its own for writing: a durable write waits for the disk, which may take longer
// than a frame, and a dragged slider writes at every step. Reads see a new value at once; of several values for one key
// only the newest reaches the file.
class BackgroundUserDefaults : public UserDefaults {
public:
    explicit BackgroundUserDefaults(const QString &file = JsonUserDefaults::defaultPath());
    // Waits until everything that was set is written, for another program that writes the file half a second; says on
    // the standard error what could not be saved.
    ~BackgroundUserDefaults() override;

    QVariant object(const QString &key) const override;
    bool set(const QString &key, const QVariant &value) override;
    bool remove(const QString &key) override;
    // Waits no longer than half a second for another program that keeps the file from being written.
    void synchronize() override;

protected:
    void beginMoment() const override;
    void endMoment() const override;

private:
    void write();

    const QString file;
    JsonUserDefaults reader;
    JsonUserDefaults writer; // of the thread; two stores on one file work as two programs do
    mutable QMutex mutex;
    QHash<QString, QVariant> waiting; // not passed to the thread yet; an invalid value removes its key
    QHash<QString, QVariant> written; // being written now
    bool isWriting = false;
    bool hasFailed = false;       // the last write
    mutable int moments = 0;      // how many are under way, one within the other
    mutable bool isFresh = false; // the file has been read in this moment, and not been written since
    QThreadPool thread;
};
