// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FileEventStreams.h"

class MainQueue;

// The birth time that the file system reports. Nothing when it reports none, or the beginning of 1970, which some file
// systems report for an unknown one.
std::optional<QDateTime> birthTime(bool stated, qint64 seconds, qint64 nanoseconds);

// File-system event streams by inotify. The creation date is the older of birth and modification: a copy has a birth of
// its own, but file managers keep the modification date of what they copy. All streams of one folder share one watch.
class LinuxFileEventStreams : public FileEventStreams {
public:
    explicit LinuxFileEventStreams(MainQueue &mainQueue);
    ~LinuxFileEventStreams() override;

    std::shared_ptr<FileEventStream> create(const QString &folder, double latency,
                                            std::function<void()> handler) override;
    std::optional<QDateTime> creationDate(const QUrl &file) const override;

private:
    class Stream;
    class Running;

    const std::shared_ptr<Running> running;
};
