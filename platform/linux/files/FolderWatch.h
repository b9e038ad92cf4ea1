// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/files/DurableFile.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QSet>

#include <functional>
#include <memory>
#include <optional>

class MainQueue;
class QSocketNotifier;
class Timer;

// Follows the changes inside one folder by inotify. The folder may be a link, and may go, come back, be renamed or
// not exist yet: what lies on the way to it is watched too, for nothing but that.
class FolderWatch {
public:
    // Calls `onChange` on the main thread `latency` seconds after the first change, once for all until then; while the
    // main loop is not in its default mode, once it is again. It may destroy the watch.
    FolderWatch(const QByteArray &path, double latency, MainQueue &mainQueue, std::function<void()> onChange);
    ~FolderWatch();

    FolderWatch(const FolderWatch &) = delete;
    FolderWatch &operator=(const FolderWatch &) = delete;

private:
    // What is watched under one inotify descriptor.
    struct Watched {
        bool isFolder = false;  // it is the folder itself
        QSet<QByteArray> names; // whose changes concern the way to the folder; its own changes have no name
    };
    enum class Change { None, Inside, OnTheWay };
    enum class Outcome { Followed, Unreadable, Gone, Refused };

    void arm();
    bool followPath();
    Outcome followSteps(QList<QByteArray> names);
    Outcome followFolder(const QByteArray &directory);
    Outcome followMissing(const QByteArray &directory, const QByteArray &name);
    Outcome followUnreadable(const QByteArray &directory);
    Outcome add(const QByteArray &entry, quint32 mask, const QSet<QByteArray> &names = {}, bool isFolder = false);
    void readEvents();
    void wake();
    void report();
    void lookWithoutEvents();
    bool isPutOff(void (FolderWatch::*step)());

    const QByteArray path;
    const double latency;
    MainQueue &mainQueue;
    const std::function<void()> onChange;
    int queue = -1; // of inotify; -1 while the system grants none
    std::unique_ptr<QSocketNotifier> notifier;
    QHash<int, Watched> watched;
    Change change = Change::None; // seen and not yet told
    std::shared_ptr<Timer> timer;
    std::unique_ptr<QObject> defaultMode;     // while a report waits for it
    std::optional<FileIdentity> lastIdentity; // of the watched folder, while there is one
    std::optional<FileIdentity> lastState;    // of the folder, while there are no events that report its changes
};
