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

// Reports new PNG files in one folder, the Desktop. It compares the listings before and after a change.
class ScreenshotWatcher {
public:
    ScreenshotWatcher(AppSettings &settings, FileEventStreams &streams, MainQueue &mainQueue,
                      const QUrl &desktopURL = homeDesktop());

    // Takes the files of now as known and watches the folder from now on. A second start adds a second stream beside
    // the first; it does not report a file twice.
    void start();

    // Ends the stream of the last start, if there is one.
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
    QDateTime seenChange; // date of the folder's last change, unless a later change could have the same date
    const std::shared_ptr<ScreenshotWatcher *> self; // deferred work holds it weakly
};
