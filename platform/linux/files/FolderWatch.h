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

// Watches one folder for changes, by inotify. The folder may be a link, and may be deleted, made again, renamed or
// missing: for that it also watches the folders and links on the way to it.
class FolderWatch {
public:
    // Calls `onChange` on the main thread `latency` seconds after the first change, once for all changes until then. If
    // the main loop is not in its default mode by then, it waits for that. `onChange` may destroy the watch.
    FolderWatch(const QByteArray &path, double latency, MainQueue &mainQueue, std::function<void()> onChange);
    ~FolderWatch();

    FolderWatch(const FolderWatch &) = delete;
    FolderWatch &operator=(const FolderWatch &) = delete;

private:
    // What one inotify watch descriptor is for.
    struct Watched {
        bool isFolder = false;  // the folder itself, not one on the way
        QSet<QByteArray> names; // entries on the way to the folder; empty names stand for itself
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
    Change change = Change::None; // not reported yet
    std::shared_ptr<Timer> timer;
    std::unique_ptr<QObject> defaultMode;     // while a report waits for it
    std::optional<FileIdentity> lastIdentity; // of the watched folder, while there is one
    std::optional<FileIdentity> lastState;    // of the folder, while there are no events that report its changes
};
