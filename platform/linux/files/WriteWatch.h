// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>

#include <functional>
#include <memory>

class QSocketNotifier;

// Tells when a file may have been written to its end: its writer has closed it, or it was replaced, moved, removed or
// opened up. Main thread only.
class WriteWatch {
public:
    WriteWatch();
    ~WriteWatch();

    WriteWatch(const WriteWatch &) = delete;
    WriteWatch &operator=(const WriteWatch &) = delete;

    // Calls `onEvent` once, at the next such event of the file at `path`, unless the watch is destroyed before. False
    // when there is no such file or the system grants no watch.
    bool await(const QByteArray &path, const std::function<void()> &onEvent);

private:
    void readEvents();

    int queue = -1; // of inotify; -1 until something is awaited
    std::unique_ptr<QSocketNotifier> notifier;
    QMultiHash<int, std::function<void()>> awaited;
};
