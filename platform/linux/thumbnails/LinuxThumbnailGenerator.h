// SPDX-License-Identifier: MIT
#pragma once

#include "platform/MainQueue.h"
#include "platform/ThumbnailGenerator.h"
#include "platform/linux/files/WriteWatch.h"
#include "platform/linux/thumbnails/ThumbnailCache.h"

#include <QByteArray>
#include <QHash>
#include <QThread>
#include <QThreadPool>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>

class DesktopThumbnailer;
class RegularFile;
struct ImageHeader;

// Thumbnails from the desktop's shared cache, else decoded by this program's own threads, else made by the desktop's
// thumbnailer service. The oldest request is served first. A file that is still being written is tried again when its
// writer closes it.
class LinuxThumbnailGenerator : public ThumbnailGenerator {
public:
    LinuxThumbnailGenerator(MainQueue &mainQueue, const QByteArray &cacheFolder);
    ~LinuxThumbnailGenerator() override;

    std::optional<QSize> imagePixelSize(const QUrl &file) const override;
    void generate(const QUrl &file, const QSizeF &size, double scale, Completion completion) override;

private:
    struct Job;
    using JobPointer = std::shared_ptr<Job>;

    void run(std::function<void()> task, int priority = 0);
    void work(const JobPointer &job);
    void makeOfImage(const JobPointer &job, const RegularFile &file, const ImageHeader &header);
    void makeOfOther(const JobPointer &job, const RegularFile &file);
    void askDesktop(const JobPointer &job, const QStringList &mimeTypes);
    void answer(const JobPointer &job, const QImage &image, const RegularFile &file, bool worthKeeping);
    bool awaitWriter(const JobPointer &job, const RegularFile &file);
    void resume(const JobPointer &job);
    bool isSettled(const FileState &state) const;
    double age(const FileState &state) const;

    MainQueue &mainQueue;
    ThumbnailCache cache;
    std::mutex queueMutex;
    // The requests that no thread has begun, by their files and pixels; what they are to answer may still be added to.
    QHash<std::pair<QByteArray, QSize>, std::weak_ptr<Job>> queued;
    std::atomic<bool> stopping = false;
    std::atomic<int> openTasks = 0;
    QThreadPool pool;
    QThread desktopThread;
    std::once_flag desktopStarted;
    DesktopThumbnailer *desktop = nullptr; // lives on desktopThread, which deletes it; null until first needed
    WriteWatch writes;
    std::shared_ptr<bool> alive = std::make_shared<bool>(true); // what reaches the main thread late looks at it
};
