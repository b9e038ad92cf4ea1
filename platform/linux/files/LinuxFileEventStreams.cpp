// SPDX-License-Identifier: MIT
#include "platform/linux/files/LinuxFileEventStreams.h"

#include "platform/FileURLs.h"
#include "platform/MainQueue.h"
#include "platform/linux/files/FolderWatch.h"

#include <QFile>

#include <algorithm>
#include <map>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace {

constexpr qint64 kMillisecondsPerSecond = 1'000;
constexpr qint64 kNanosecondsPerMillisecond = 1'000'000;

QDateTime dateOf(qint64 seconds, qint64 nanoseconds)
{
    return QDateTime::fromMSecsSinceEpoch(seconds * kMillisecondsPerSecond + nanoseconds / kNanosecondsPerMillisecond);
}

} // namespace

// The running streams, by folder and latency. This list keeps them, even if nobody else does.
class LinuxFileEventStreams::Running {
public:
    explicit Running(MainQueue &queue)
        : mainQueue(queue)
    {
    }

    void add(const std::shared_ptr<Stream> &stream);
    void remove(Stream *stream);

private:
    using Key = std::pair<QByteArray, double>;
    struct Group {
        std::unique_ptr<FolderWatch> watch;
        QList<std::shared_ptr<Stream>> streams;
    };

    static Key keyOf(const Stream &stream);
    void call(const Key &key);

    MainQueue &mainQueue;
    std::map<Key, Group> groups;
};

class LinuxFileEventStreams::Stream : public FileEventStream, public std::enable_shared_from_this<Stream> {
public:
    Stream(std::weak_ptr<Running> owner, QByteArray watchedFolder, double seconds, std::function<void()> callback)
        : running(std::move(owner))
        , folder(std::move(watchedFolder))
        , latency(seconds)
        , handler(std::move(callback))
    {
    }

    void start() override
    {
        if (const auto owner = running.lock(); owner && handler)
            owner->add(shared_from_this());
    }

    void stop() override
    {
        if (const auto owner = running.lock())
            owner->remove(this);
    }

    void invalidate() override
    {
        stop();
        handler = nullptr;
    }

    const std::weak_ptr<Running> running;
    const QByteArray folder;
    const double latency;
    std::function<void()> handler; // empty after invalidate()
    bool isStarted = false;        // and not stopped
};

LinuxFileEventStreams::Running::Key LinuxFileEventStreams::Running::keyOf(const Stream &stream)
{
    return {stream.folder, stream.latency};
}

void LinuxFileEventStreams::Running::add(const std::shared_ptr<Stream> &stream)
{
    if (std::exchange(stream->isStarted, true))
        return;
    const Key key = keyOf(*stream);
    Group &group = groups[key];
    group.streams.append(stream);
    if (!group.watch)
        group.watch = std::make_unique<FolderWatch>(key.first, key.second, mainQueue, [this, key] { call(key); });
}

void LinuxFileEventStreams::Running::remove(Stream *stream)
{
    if (!std::exchange(stream->isStarted, false))
        return;
    const auto group = groups.find(keyOf(*stream));
    // Keep a handle: the list may have the last one, and stop() is still running.
    const auto streams = group->second.streams;
    group->second.streams.removeIf([stream](const auto &other) { return other.get() == stream; });
    if (group->second.streams.isEmpty())
        groups.erase(group);
}

void LinuxFileEventStreams::Running::call(const Key &key)
{
    const auto streams = groups[key].streams;
    for (const auto &stream : streams) {
        // An earlier handler may have stopped this stream.
        if (!stream->isStarted)
            continue;
        const auto handler = stream->handler;
        handler();
    }
}

LinuxFileEventStreams::LinuxFileEventStreams(MainQueue &queue)
    : running(std::make_shared<Running>(queue))
{
}

LinuxFileEventStreams::~LinuxFileEventStreams() = default;

std::shared_ptr<FileEventStream> LinuxFileEventStreams::create(const QString &folder, double latency,
                                                               std::function<void()> handler)
{
    if (!folder.startsWith(QLatin1Char('/')) || !handler)
        return nullptr;
    return std::make_shared<Stream>(running, QFile::encodeName(folder), latency, std::move(handler));
}

std::optional<QDateTime> LinuxFileEventStreams::creationDate(const QUrl &file) const
{
    // Query the entry itself, also of a link. Open nothing, so that nothing can block.
    struct statx info = {};
    if (statx(AT_FDCWD, fileSystemPath(file).constData(), AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT,
              STATX_BTIME | STATX_MTIME, &info) != 0)
        return {};
    const auto birth = birthTime(info.stx_mask & STATX_BTIME, info.stx_btime.tv_sec, info.stx_btime.tv_nsec);
    if (!birth)
        return {};
    return std::min(*birth, dateOf(info.stx_mtime.tv_sec, info.stx_mtime.tv_nsec));
}

std::optional<QDateTime> birthTime(bool stated, qint64 seconds, qint64 nanoseconds)
{
    if (!stated || seconds <= 0)
        return {};
    return dateOf(seconds, nanoseconds);
}
