// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/files/JsonUserDefaults.h"

#include <QHash>
#include <QMutex>
#include <QThreadPool>

// The settings file, written by a thread of its own: a durable write waits for the disk, which may take longer than a
// picture stays on the screen, and a slider that is dragged writes at every step. What was set is answered at once; of
// several values for one key only the newest need reach the file.
class BackgroundUserDefaults : public UserDefaults {
public:
    explicit BackgroundUserDefaults(const QString &file = JsonUserDefaults::defaultPath());
    // Waits until everything that was set is written.
    ~BackgroundUserDefaults() override;

    QVariant object(const QString &key) const override;
    bool set(const QString &key, const QVariant &value) override;
    bool remove(const QString &key) override;
    void synchronize() override;

protected:
    void beginMoment() const override;
    void endMoment() const override;

private:
    void write();

    JsonUserDefaults reader;
    JsonUserDefaults writer; // the thread's; two stores on one file get along, as two programs do
    mutable QMutex mutex;
    QHash<QString, QVariant> waiting; // not handed to the thread yet; an invalid value removes its key
    QHash<QString, QVariant> written; // being written now
    bool isWriting = false;
    mutable int moments = 0;      // how many are under way, one within the other
    mutable bool isFresh = false; // the file has been read in this moment, and not been written since
    QThreadPool thread;
};
