// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QSet>
#include <QUrl>

#include <functional>
#include <memory>

class AppSettings;
class FileEventStream;
class FileEventStreams;
class MainQueue;

// The folder "Desktop" in the user's home directory.
QUrl homeDesktop();

// Notices new PNG files in one folder, the Desktop, by comparing its listings before and after a change.
class ScreenshotWatcher {
public:
    ScreenshotWatcher(AppSettings &settings, FileEventStreams &streams, MainQueue &mainQueue,
                      const QUrl &desktopURL = homeDesktop());

    // Takes what is there now as known and follows the folder from here on. A second start adds a second stream, and
    // the first one goes on; no file is reported twice for it.
    void start();

    // Ends the stream of the last start; nothing when there is none.
    void stop();

    // Receives each new screenshot, on the main thread, in a later turn of its loop.
    std::function<void(const QUrl &file)> onNewScreenshot;

private:
    void checkForNewScreenshots();
    void rememberChange(const QDateTime &change);
    void report(const QByteArray &name);

    std::shared_ptr<FileEventStream> eventStream;
    QSet<QByteArray> knownFiles; // names of the PNG files at the last look
    const QUrl desktopURL;

    AppSettings &settings;
    FileEventStreams &streams;
    MainQueue &mainQueue;
    QDateTime seenChange; // the folder's last one before the last look, if a later one cannot bear the same date
    const std::shared_ptr<ScreenshotWatcher *> self; // what deferred work holds weakly
};
