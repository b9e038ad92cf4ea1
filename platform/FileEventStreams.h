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

    // Ends the stream for good. Its handler is not called again.
    virtual void invalidate() = 0;
};

class FileEventStreams {
public:
    virtual ~FileEventStreams() = default;

    // Makes a stream and does not start it. It calls `handler` on the main thread at most `latency` seconds after a
    // change in `folder`, once for all changes in that time, but not while an alert, a drag or an open menu runs the
    // main loop. It does not report changes before its start, though a Mac may report very recent ones. The folder need
    // not exist yet. Null when refused.
    virtual std::shared_ptr<FileEventStream> create(const QString &folder, double latency,
                                                    std::function<void()> handler) = 0;

    // When the file was created. Nothing when it cannot be read, or its file system keeps no such date.
    virtual std::optional<QDateTime> creationDate(const QUrl &file) const = 0;
};
