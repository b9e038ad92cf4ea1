// SPDX-License-Identifier: MIT
#include "platform/linux/thumbnails/LinuxThumbnailGenerator.h"

#include "platform/FileURLs.h"
#include "platform/linux/thumbnails/DesktopThumbnailer.h"

#include <QFile>
#include <QMimeDatabase>

#include <cmath>
#include <malloc.h>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int kNiceness = 10;
// A file without a readable picture may still be in writing if it was changed within this time.
constexpr double kWritingTime = 60.0; // seconds
// For a file that is closed again and again and is never complete.
constexpr int kMostRetries = 100;
// The patterns of the MIME database look at no more bytes.
constexpr quint32 kFirstBytes = 16'384;

const QString kSvgType = QStringLiteral("image/svg+xml");

bool isNamedLikeAnImage(const QString &name)
{
    return QMimeDatabase()
        .mimeTypeForFile(name, QMimeDatabase::MatchExtension)
        .name()
        .startsWith(QLatin1String("image/"));
}

FileState stateOf(const FileStateRecord &record)
{
    return {record.size, record.seconds, record.nanoseconds};
}

} // namespace

// One request, or several for the same picture. An answered request may later get a better picture, but not the answer
// that there is none.
struct LinuxThumbnailGenerator::Job {
    struct Asker {
        double edge;
        Completion completion;
        Delayed delayed;
    };

    void answer(const QImage &image, const std::optional<QSize> &pixelSize)
    {
        if (std::exchange(isAnswered, true) && image.isNull())
            return;
        for (const Asker &asker : askers) {
            const QSizeF size =
                fittedThumbnailSize(asker.edge, pixelSize ? std::optional<QSizeF>(*pixelSize) : std::nullopt);
            asker.completion(image.isNull() ? std::nullopt : std::optional(Thumbnail{image, size}));
        }
    }

    void answerNothing() { answer({}, {}); }

    QByteArray path;
    QString name;
    double edge = 0; // points
    double scale = 1;
    QSize square; // pixels
    std::vector<Asker> askers;
    bool isAnswered = false;
    int retries = 0;
    bool isDrawing = false;
};

LinuxThumbnailGenerator::LinuxThumbnailGenerator(MainQueue &queue, std::shared_ptr<FileHelpers> fileHelpers,
                                                 const QByteArray &cacheFolder)
    : mainQueue(queue)
    , files(std::move(fileHelpers))
    , pictures(queue, *files)
    , cache(cacheFolder)
{
    encoders.setMaxThreadCount(1);
}

LinuxThumbnailGenerator::~LinuxThumbnailGenerator()
{
    alive.reset();
    encoders.clear();
    encoders.waitForDone();
    desktopThread.quit();
    desktopThread.wait();
    for (const JobPointer &job : std::exchange(open, {}))
        job->answerNothing();
}

void LinuxThumbnailGenerator::generate(const QUrl &file, double edge, double scale, Completion completion,
                                       Delayed delayed)
{
    const QByteArray path = fileSystemPath(file);
    const int side = pixelSide(edge, scale, kLongestSide);
    JobPointer job = queued.value({path, side}).lock();
    // While the user drags the slider of the item size, the shelf asks for the same pixels again and again.
    if (job) {
        job->askers.push_back({edge, std::move(completion), delayed});
    } else {
        job = std::make_shared<Job>();
        job->path = path;
        job->name = lastPathComponent(file);
        job->edge = edge;
        job->scale = scale;
        job->square = QSize(side, side);
        job->askers.push_back({edge, std::move(completion), delayed});
        open.insert(job);
        queued.insert({path, side}, job);
        work(job);
    }
    if (!delayed)
        return;
    mainQueue.after(kBlink, [weak = std::weak_ptr<Job>(job), delayed = std::move(delayed)] {
        if (const JobPointer late = weak.lock(); late && !late->isAnswered)
            delayed();
    });
}

void LinuxThumbnailGenerator::work(const JobPointer &job, PictureTask task)
{
    PictureRequest request;
    request.task = task;
    request.path = job->path;
    request.edge = job->edge;
    request.scale = job->scale;
    if (cache.covers(job->path)) {
        request.uri = ThumbnailCache::uri(job->path);
        request.entries = cache.entries(job->path, job->square);
        if (const auto sizeClass = ThumbnailCache::sizeClassFor(job->square))
            request.kept = sizeClass->pixels;
    }
    pictures.request(
        std::move(request),
        [this, job, task, stillThere = std::weak_ptr<bool>(alive)](const PictureAnswer &answer) {
            if (!stillThere.expired())
                answered(job, task, answer);
        },
        [this, job, stillThere = std::weak_ptr<bool>(alive)] {
            // Later requests want the file as it is then.
            if (!stillThere.expired())
                begun(job);
        });
}

void LinuxThumbnailGenerator::begun(const JobPointer &job)
{
    const auto entry = queued.constFind({job->path, job->square.width()});
    if (entry != queued.constEnd() && entry->lock() == job)
        queued.erase(entry);
}

void LinuxThumbnailGenerator::answered(const JobPointer &job, PictureTask task, const PictureAnswer &answer)
{
    begun(job);
    const FileState state = stateOf(answer.state);
    const bool isLooked = answer.kind == FileKind::Regular;
    bool isOpen = false;
    switch (isLooked ? answer.outcome : PictureOutcome::GivenUp) {
    case PictureOutcome::Made:
        job->answer(answer.shown, answer.pixelSize);
        if (!answer.kept.isNull())
            keep(job, state, answer.kept);
        break;
    case PictureOutcome::Partial:
        job->answer(answer.shown, answer.pixelSize);
        isOpen = awaitWriter(job, state);
        break;
    case PictureOutcome::Broken:
        isOpen = awaitWriter(job, state);
        if (!isOpen && task == PictureTask::Whole)
            keepFailure(job, state);
        break;
    case PictureOutcome::Foreign:
        isOpen = !answer.pixelSize && isNamedLikeAnImage(job->name) && awaitWriter(job, state);
        if (isOpen)
            break;
        [[fallthrough]];
    case PictureOutcome::TooLarge:
        // The desktop's thumbnailer may know this kind of file.
        makeOfOther(job, state);
        return;
    case PictureOutcome::Failed:
    case PictureOutcome::GivenUp:
        break;
    }
    if (isOpen)
        return;
    job->answerNothing();
    open.erase(job);
}

void LinuxThumbnailGenerator::makeOfOther(const JobPointer &job, const FileState &state)
{
    const auto giveUp = [this, job] {
        job->answerNothing();
        open.erase(job);
    };
    if (state.size <= 0) {
        giveUp();
        return;
    }
    files->look(job->path, kFirstBytes,
                [this, job, giveUp, stillThere = std::weak_ptr<bool>(alive)](FileKind kind, const QByteArray &first) {
                    if (stillThere.expired())
                        return;
                    if (kind != FileKind::Regular) {
                        giveUp();
                        return;
                    }
                    const QMimeType type = QMimeDatabase().mimeTypeForFileNameAndData(job->name, first);
                    if (type.name() == kSvgType && !job->isDrawing) {
                        job->isDrawing = true;
                        work(job, PictureTask::Drawing);
                    } else {
                        askDesktop(job, type.aliases() << type.name());
                    }
                });
}

void LinuxThumbnailGenerator::askDesktop(const JobPointer &job, const QStringList &mimeTypes)
{
    const auto sizeClass = ThumbnailCache::sizeClassFor(job->square);
    if (!sizeClass || !cache.covers(job->path)) {
        job->answerNothing();
        open.erase(job);
        return;
    }
    std::call_once(desktopStarted, [this] {
        // Connecting to the bus would block, but the program has already done that at its start.
        desktop = new DesktopThumbnailer(QDBusConnection::sessionBus());
        desktop->moveToThread(&desktopThread);
        QObject::connect(&desktopThread, &QThread::finished, desktop, &QObject::deleteLater);
        desktopThread.start();
    });
    const auto done = [this, job](bool made) {
        // This callback runs on the service's thread, which ends before this object does.
        QMetaObject::invokeMethod(
            &receiver,
            [this, job, made] {
                if (made) {
                    work(job, PictureTask::CacheOnly);
                } else {
                    job->answerNothing();
                    open.erase(job);
                }
            },
            Qt::QueuedConnection);
    };
    const QString uri = QString::fromLatin1(ThumbnailCache::uri(job->path));
    const QString flavor = QString::fromLatin1(sizeClass->name);
    QMetaObject::invokeMethod(
        desktop, [=, this] { desktop->request(uri, mimeTypes, flavor, done); }, Qt::QueuedConnection);
}

void LinuxThumbnailGenerator::keep(const JobPointer &job, const FileState &state, const QImage &image)
{
    const auto sizeClass = ThumbnailCache::sizeClassFor(job->square);
    if (!sizeClass || !cache.covers(job->path))
        return;
    ++beingEncoded;
    encoders.start([this, path = job->path, entry = cache.entryPath(sizeClass->name, job->path), state, image] {
        // This fails, harmlessly, when the whole process has a higher nice value.
        ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), kNiceness);
        const QByteArray bytes = ThumbnailCache::entryBytes(path, state, image);
        // After fifty photos, half of the program's memory would be freed memory that the allocator keeps.
        if (--beingEncoded == 0)
            ::malloc_trim(0);
        QMetaObject::invokeMethod(
            &receiver, [this, entry, bytes] { files->keep(cache.path(), entry, bytes); }, Qt::QueuedConnection);
    });
}

void LinuxThumbnailGenerator::keepFailure(const JobPointer &job, const FileState &state)
{
    if (cache.covers(job->path))
        files->keep(cache.path(), cache.failurePath(job->path), ThumbnailCache::failureBytes(job->path, state));
}

bool LinuxThumbnailGenerator::awaitWriter(const JobPointer &job, const FileState &state)
{
    if (job->retries >= kMostRetries || age(state) >= kWritingTime)
        return false;
    ++job->retries;
    job->answerNothing(); // the shelf shows an icon meanwhile
    mainQueue.async([this, job, state, stillThere = std::weak_ptr<bool>(alive)] {
        if (!stillThere.expired())
            watch(job, state);
    });
    return true;
}

void LinuxThumbnailGenerator::watch(const JobPointer &job, const FileState &state)
{
    files->watch(job->path, writes.queue(),
                 [this, job, state,
                  stillThere = std::weak_ptr<bool>(alive)](int watch, const std::optional<FileStateRecord> &now) {
                     if (stillThere.expired())
                         return;
                     // The writer may have finished before the watch began, or the system may have refused the watch.
                     if (now && stateOf(*now) != state) {
                         work(job);
                     } else if (watch >= 0) {
                         ++awaited;
                         writes.await(watch, [this, job] {
                             --awaited;
                             work(job);
                         });
                     } else {
                         open.erase(job);
                     }
                 });
}

// The seconds since the file's last change. The absolute value, because the clock of a remote file system may be ahead.
double LinuxThumbnailGenerator::age(const FileState &state) const
{
    constexpr double kMillisecondsPerSecond = 1000.0;
    const double now = double(mainQueue.currentDate().toMSecsSinceEpoch()) / kMillisecondsPerSecond;
    return std::abs(now - state.modified());
}
