// SPDX-License-Identifier: MIT
#pragma once

#include "platform/MainQueue.h"
#include "platform/ThumbnailGenerator.h"
#include "platform/linux/files/WriteWatch.h"
#include "platform/linux/helpers/FileHelpers.h"
#include "platform/linux/helpers/PictureHelpers.h"
#include "platform/linux/thumbnails/ThumbnailCache.h"

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QThread>
#include <QThreadPool>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <unordered_set>

class DesktopThumbnailer;

// Gets thumbnails from the desktop's shared cache, else by decoding the file, both in helper processes, else from the
// desktop's thumbnailer service. The oldest request is served first. A file that is still being written is tried again
// when its writer closes it. Everything happens on the main thread, which never blocks; only cache entries are encoded
// on another thread.
class LinuxThumbnailGenerator : public ThumbnailGenerator {
public:
    // A thumbnail that takes longer is delayed.
    static constexpr double kBlink = 0.1; // seconds

    LinuxThumbnailGenerator(MainQueue &mainQueue, std::shared_ptr<FileHelpers> files, const QByteArray &cacheFolder);
    ~LinuxThumbnailGenerator() override;

    void generate(const QUrl &file, double edge, double scale, Completion completion,
                  Delayed delayed = nullptr) override;

    // The number of files whose writers are waited for.
    int awaitedWriters() const { return awaited; }

    // The process numbers of the helpers that make pictures.
    std::vector<pid_t> processes() const { return pictures.processes(); }

private:
    struct Job;
    using JobPointer = std::shared_ptr<Job>;

    void work(const JobPointer &job, PictureTask task = PictureTask::Whole);
    void begun(const JobPointer &job);
    void answered(const JobPointer &job, PictureTask task, const PictureAnswer &answer);
    void makeOfOther(const JobPointer &job, const FileState &state);
    void askDesktop(const JobPointer &job, const QStringList &mimeTypes);
    void keep(const JobPointer &job, const FileState &state, const QImage &image);
    void keepFailure(const JobPointer &job, const FileState &state);
    bool awaitWriter(const JobPointer &job, const FileState &state);
    void watch(const JobPointer &job, const FileState &state);
    double age(const FileState &state) const;

    MainQueue &mainQueue;
    const std::shared_ptr<FileHelpers> files;
    PictureHelpers pictures;
    ThumbnailCache cache;
    // The requests that no helper has begun, by file and pixels. Another request for the same joins them.
    QHash<std::pair<QByteArray, int>, std::weak_ptr<Job>> queued;
    std::unordered_set<JobPointer> open;
    int awaited = 0;
    QThreadPool encoders;
    std::atomic<int> beingEncoded = 0;
    QThread desktopThread;
    std::once_flag desktopStarted;
    DesktopThumbnailer *desktop = nullptr; // lives on desktopThread, which deletes it; null until the first use
    WriteWatch writes;
    QObject receiver;                                           // receives the results of other threads
    std::shared_ptr<bool> alive = std::make_shared<bool>(true); // late callbacks check it
};
