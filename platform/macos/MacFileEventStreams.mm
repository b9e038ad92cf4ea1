// SPDX-License-Identifier: MIT
#include "platform/macos/MacFileEventStreams.h"

#include "platform/FileURLs.h"
#include "platform/macos/MacConversions.h"

#include <QFile>

#import <CoreServices/CoreServices.h>
#import <Foundation/Foundation.h>

namespace {

constexpr FSEventStreamCreateFlags kFlags = kFSEventStreamCreateFlagUseCFTypes | kFSEventStreamCreateFlagFileEvents;
static_assert(kFlags == 0x11);

// A dispatch queue, which replaces this deprecated function, does not have run-loop modes.
void scheduleInDefaultMode(FSEventStreamRef stream)
{
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wdeprecated-declarations"
    FSEventStreamScheduleWithRunLoop(stream, CFRunLoopGetMain(), kCFRunLoopDefaultMode);
#pragma clang diagnostic pop
}

} // namespace

class MacFileEventStreams::Stream : public FileEventStream, public std::enable_shared_from_this<Stream> {
public:
    Stream(std::weak_ptr<Running> owner, const QString &folder, double latency, std::function<void()> callback)
        : running(std::move(owner))
        , handler(std::move(callback))
    {
        NSArray *paths = @[ toNSString(folder) ];
        FSEventStreamContext context = {0, this, nullptr, nullptr, nullptr};
        stream = FSEventStreamCreate(kCFAllocatorDefault, &Stream::callback, &context, (__bridge CFArrayRef)paths,
                                     kFSEventStreamEventIdSinceNow, latency, kFlags);
        if (stream)
            scheduleInDefaultMode(stream);
    }
    Q_DISABLE_COPY_MOVE(Stream)
    ~Stream() override { end(); }

    bool isUsable() const { return stream != nullptr; }

    void start() override
    {
        const auto owner = running.lock();
        if (!owner || !stream || owner->contains(shared_from_this()))
            return;
        if (FSEventStreamStart(stream))
            owner->insert(shared_from_this());
    }

    void stop() override
    {
        const auto owner = running.lock();
        // The set may have the last reference.
        const auto self = shared_from_this();
        if (owner && owner->erase(self) != 0)
            FSEventStreamStop(stream);
    }

    void invalidate() override
    {
        stop();
        end();
    }

private:
    static void callback(ConstFSEventStreamRef, void *info, size_t, void *, const FSEventStreamEventFlags *,
                         const FSEventStreamEventId *)
    {
        if (!info)
            return;
        // The handler may stop and release the stream.
        const auto self = static_cast<Stream *>(info)->shared_from_this();
        self->handler();
    }

    void end()
    {
        if (!stream)
            return;
        FSEventStreamInvalidate(stream);
        FSEventStreamRelease(stream);
        stream = nullptr;
    }

    const std::weak_ptr<Running> running;
    const std::function<void()> handler;
    FSEventStreamRef stream = nullptr;
};

MacFileEventStreams::MacFileEventStreams()
    : running(std::make_shared<Running>())
{
}

MacFileEventStreams::~MacFileEventStreams()
{
    const Running streams = *running;
    for (const auto &stream : streams)
        stream->invalidate();
}

std::shared_ptr<FileEventStream> MacFileEventStreams::create(const QString &folder, double latency,
                                                             std::function<void()> handler)
{
    if (!folder.startsWith(QLatin1Char('/')) || !handler)
        return nullptr;
    const auto stream = std::make_shared<Stream>(running, folder, latency, std::move(handler));
    if (!stream->isUsable())
        return nullptr;
    return stream;
}

std::optional<QDateTime> MacFileEventStreams::creationDate(const QUrl &file) const
{
    NSString *path = toNSString(QFile::decodeName(fileSystemPath(file)));
    NSDictionary *attributes = [NSFileManager.defaultManager attributesOfItemAtPath:path error:nil];
    id date = attributes[NSFileCreationDate];
    if (![date isKindOfClass:[NSDate class]])
        return {};
    return QDateTime::fromNSDate(date);
}
