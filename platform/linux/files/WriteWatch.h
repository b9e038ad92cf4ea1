// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QSet>

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

    // The inotify queue that watches are to be added to, by whoever may touch the file; negative when the system grants
    // none. Each is to end with its first event.
    int queue();

    // Calls `onEvent` once, when that watch says something; at once if it has done so already.
    void await(int watch, const std::function<void()> &onEvent);

private:
    void readEvents();

    int events = -1; // of inotify; -1 until something is awaited
    std::unique_ptr<QSocketNotifier> notifier;
    QMultiHash<int, std::function<void()>> awaited;
    QSet<int> unclaimed; // watches that said something before it was known whose they are
};
