// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QSet>

#include <functional>
#include <memory>

class QSocketNotifier;

// Reports when a file may be complete: its writer has closed it, or the file was replaced, moved or removed, or its
// permissions have changed. Main thread only.
class WriteWatch {
public:
    WriteWatch();
    ~WriteWatch();

    WriteWatch(const WriteWatch &) = delete;
    WriteWatch &operator=(const WriteWatch &) = delete;

    // The inotify queue. Another process that may touch the file adds watches to it, each of which ends with its first
    // event. Negative when the system grants no queue.
    int queue();

    // Calls `onEvent` once, at the first event of `watch`; at once when that has already happened.
    void await(int watch, const std::function<void()> &onEvent);

private:
    void readEvents();

    int events = -1; // the inotify queue; -1 until the first use
    std::unique_ptr<QSocketNotifier> notifier;
    QMultiHash<int, std::function<void()>> awaited;
    QSet<int> unclaimed; // watches whose event arrived before await()
};
