// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>
#include <QString>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>

// Changes inside one folder. A started stream keeps running until it is stopped, whether or not its handle is kept.
class FileEventStream {
public:
    virtual ~FileEventStream() = default;

    virtual void start() = 0;
    virtual void stop() = 0;

    // Ends the stream for good; it is not called again.
    virtual void invalidate() = 0;
};

class FileEventStreams {
public:
    virtual ~FileEventStreams() = default;

    // A stream, not yet started, that calls `handler` on the main thread at most `latency` seconds after a change
    // inside `folder`, once for all changes within that time. While an alert, a drag or an open menu holds the main
    // loop the call waits for its end. What changed before the start is not reported, but for what changed only just
    // before: a Mac may report it. The folder need not exist yet. Null when refused.
    virtual std::shared_ptr<FileEventStream> create(const QString &folder, double latency,
                                                    std::function<void()> handler) = 0;

    // When the file was created; nothing when it cannot be read or its file system keeps no such date.
    virtual std::optional<QDateTime> creationDate(const QUrl &file) const = 0;
};
