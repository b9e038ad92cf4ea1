// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FileEventStreams.h"

class MainQueue;

// When a file was created, of what the file system answered: nothing when it stated no birth time, or none after the
// beginning of 1970, which some file systems give for one they do not know.
std::optional<QDateTime> birthTime(bool stated, qint64 seconds, qint64 nanoseconds);

// File-system event streams by inotify. All streams of one folder share one watch.
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
