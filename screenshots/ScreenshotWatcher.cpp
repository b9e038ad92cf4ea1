// SPDX-License-Identifier: MIT
#include "screenshots/ScreenshotWatcher.h"

#include "platform/FileEventStreams.h"
#include "platform/FileURLs.h"
#include "platform/MainQueue.h"
#include "screenshots/NewScreenshots.h"
#include "settings/AppSettings.h"

#include <QDir>

namespace {

constexpr double kLatency = 0.5; // seconds

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
    if (!settings.autoAddScreenshots())
        return;
    // Each start leaves a stream behind, and all of them call for the same change, one after the other. One look is
    // enough; a change that comes after it makes them call again.
    if (checked)
        return;
    checked = true;
    const std::weak_ptr<ScreenshotWatcher *> weak = self;
    mainQueue.async([weak] {
        if (const auto watcher = weak.lock())
            (*watcher)->checked = false;
    });

    const QList<QByteArray> names = refreshNames(knownFiles, fileSystemPath(desktopURL));
    for (const QByteArray &name : names)
        report(name);
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
