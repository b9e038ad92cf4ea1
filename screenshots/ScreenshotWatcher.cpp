// SPDX-License-Identifier: MIT
#include "screenshots/ScreenshotWatcher.h"

#include "platform/FileEventStreams.h"
#include "platform/FileURLs.h"
#include "platform/MainQueue.h"
#include "screenshots/NewScreenshots.h"
#include "settings/AppSettings.h"

#include <QDir>
#include <QFileInfo>

namespace {

constexpr double kLatency = 0.5; // seconds
// Two changes within one tick of the kernel's clock get the same date; this is the slowest tick. Some file systems keep
// whole seconds only, so a date is trusted for one turn of the main loop.
constexpr qint64 kClockTick = 20; // milliseconds

} // namespace

QUrl homeDesktop()
{
    return QUrl::fromLocalFile(QDir::homePath() + QStringLiteral("/Desktop"));
}

ScreenshotWatcher::ScreenshotWatcher(AppSettings &appSettings, FileEventStreams &eventStreams, MainQueue &queue,
                                     const QUrl &desktop)
    : desktopURL(desktop)
    , settings(appSettings)
    , streams(eventStreams)
    , mainQueue(queue)
    , self(std::make_shared<ScreenshotWatcher *>(this))
{
}

void ScreenshotWatcher::start()
{
    knownFiles = screenshotNames(fileSystemPath(desktopURL));
    const std::weak_ptr<ScreenshotWatcher *> weak = self;
    auto stream = streams.create(desktopURL.toLocalFile(), kLatency, [weak] {
        if (const auto watcher = weak.lock())
            (*watcher)->checkForNewScreenshots();
    });
    if (!stream)
        return;
    stream->start();
    eventStream = std::move(stream);
}

void ScreenshotWatcher::stop()
{
    if (!eventStream)
        return;
    eventStream->stop();
    eventStream->invalidate();
    eventStream = nullptr;
}

void ScreenshotWatcher::checkForNewScreenshots()
{
    if (!settings.get(Settings::autoAddScreenshots))
        return;
    // Each start leaves a stream behind, a dragged slider hundreds, and all of them report the same change. List the
    // folder once only: a crowded one takes long.
    const QDateTime change = QFileInfo(desktopURL.toLocalFile()).metadataChangeTime();
    if (seenChange.isValid() && change == seenChange)
        return;
    rememberChange(change);

    const QList<QByteArray> names = refreshNames(knownFiles, fileSystemPath(desktopURL));
    for (const QByteArray &name : names)
        report(name);
}

void ScreenshotWatcher::rememberChange(const QDateTime &change)
{
    seenChange = change.msecsTo(mainQueue.currentDate()) > kClockTick ? change : QDateTime();
    if (!seenChange.isValid())
        return;
    // Valid for the calls of this turn only.
    const std::weak_ptr<ScreenshotWatcher *> weak = self;
    mainQueue.async([weak] {
        if (const auto watcher = weak.lock())
            (*watcher)->seenChange = {};
    });
}

void ScreenshotWatcher::report(const QByteArray &name)
{
    const QUrl file = fileURL(fileSystemPath(desktopURL) + '/' + name);
    const auto created = streams.creationDate(file);
    if (!created || !isRecent(*created, mainQueue.currentDate()))
        return;
    const std::weak_ptr<ScreenshotWatcher *> weak = self;
    mainQueue.async([weak, file] {
        const auto watcher = weak.lock();
        if (!watcher)
            return;
        // The callback may replace itself or end the watcher.
        if (const auto callback = (*watcher)->onNewScreenshot)
            callback(file);
    });
}
