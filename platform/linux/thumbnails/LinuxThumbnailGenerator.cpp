// SPDX-License-Identifier: MIT
#include "platform/linux/thumbnails/LinuxThumbnailGenerator.h"

#include "platform/FileURLs.h"
#include "platform/linux/thumbnails/DesktopThumbnailer.h"
#include "platform/linux/thumbnails/ImageHeader.h"
#include "platform/linux/thumbnails/ImageThumbnailer.h"
#include "platform/linux/thumbnails/SvgThumbnailer.h"

#include <QFile>
#include <QMimeDatabase>

#include <algorithm>
#include <cmath>
#include <malloc.h>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int kMostThreads = 4;
// Ten steps leave the main thread nine tenths of a core that it has to share.
constexpr int kNiceness = 10;
constexpr int kLastPriority = -1;
// A file changed this lately may still be being written, and a second change may leave its date as it is.
constexpr double kSettlingTime = 1.0;
// One that cannot be read is waited for when it was changed within that time: its writer may be taking a rest.
constexpr double kWritingTime = 60.0;
// Of a file that is closed again and again and never whole.
constexpr int kMostRetries = 100;
// Smaller pictures are decoded again about as fast as their entry in the cache is read.
constexpr qint64 kPixelsWorthKeeping = 262'144;
constexpr qint64 kLargestSvg = 10'000'000;
constexpr qint64 kSvgWorthKeeping = 100'000;

const QString kSvgType = QStringLiteral("image/svg+xml");

// The pixels that so many points hold, in whole ones but at least one; a hair is forgiven, as 41 x 1.1 is not 45.1.
int pixelSide(double points, double scale)
{
    constexpr double kHair = 1e-6;
    constexpr double kLongestSide = 4096;
    const double pixels = points * scale;
    return pixels > 0 ? static_cast<int>(std::clamp(std::floor(pixels + kHair), 1.0, kLongestSide)) : 0;
}

bool isNamedLikeAnImage(const QString &name)
{
    return QMimeDatabase()
        .mimeTypeForFile(name, QMimeDatabase::MatchExtension)
        .name()
        .startsWith(QLatin1String("image/"));
}

} // namespace

// One request, or several that ask for the same. It is answered with nothing when it is let go unanswered, wherever
// that is. Once answered it may be answered with a better picture, and no more with nothing.
struct LinuxThumbnailGenerator::Job {
    Job() = default;
    Job(const Job &) = delete;
    Job &operator=(const Job &) = delete;
    ~Job() { answer({}); }

    void answer(const std::optional<QImage> &image)
    {
        if (std::exchange(isAnswered, true) && !image)
            return;
        for (const Completion &completion : completions)
            completion(image);
    }

    QByteArray path;
    QString name;
    QSize bound; // pixels
    std::vector<Completion> completions;
    bool isAnswered = false;
    int retries = 0;
    bool waits = false; // for its file's writer; main thread only
};

LinuxThumbnailGenerator::LinuxThumbnailGenerator(MainQueue &queue, const QByteArray &cacheFolder)
    : mainQueue(queue)
    , cache(cacheFolder)
{
    silenceImageReaders();
    pool.setMaxThreadCount(std::clamp(QThread::idealThreadCount(), 1, kMostThreads));
}

LinuxThumbnailGenerator::~LinuxThumbnailGenerator()
{
    alive.reset();
    stopping = true;
    pool.clear();
    pool.waitForDone();
    desktopThread.quit();
    desktopThread.wait();
    // What the service's thread has still handed to the pool.
    pool.clear();
    pool.waitForDone();
}

std::optional<QSize> LinuxThumbnailGenerator::imagePixelSize(const QUrl &file) const
{
    const auto open = RegularFile::open(fileSystemPath(file));
    const auto header = open ? readImageHeader(*open) : std::nullopt;
    return header ? std::optional(header->size) : std::nullopt;
}

void LinuxThumbnailGenerator::generate(const QUrl &file, const QSizeF &size, double scale, Completion completion)
{
    const QByteArray path = fileSystemPath(file);
    const QSize bound(pixelSide(size.width(), scale), pixelSide(size.height(), scale));
    const std::lock_guard lock(queueMutex);
    // A shelf whose items are made larger by a tenth of a point at a time asks for the same pixels again and again.
    if (const JobPointer same = queued.value({path, bound}).lock()) {
        same->completions.push_back(std::move(completion));
        return;
    }
    const auto job = std::make_shared<Job>();
    job->path = path;
    job->name = lastPathComponent(file);
    job->bound = bound;
    job->completions.push_back(std::move(completion));
    queued.insert({path, bound}, job);
    run([this, job] {
        {
            // Who asks from here on wants the file as it is then.
            const std::lock_guard begin(queueMutex);
            queued.remove({job->path, job->bound});
        }
        work(job);
    });
}

void LinuxThumbnailGenerator::run(std::function<void()> task, int priority)
{
    ++openTasks;
    pool.start(
        [this, task = std::move(task)]() mutable {
            // Fails harmlessly where the whole process is nicer still.
            ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), kNiceness);
            if (!stopping)
                task();
            task = nullptr;
            // After fifty photos half of what this program then holds would be free memory kept for the next ones.
            if (--openTasks == 0)
                ::malloc_trim(0);
        },
        priority);
}

void LinuxThumbnailGenerator::work(const JobPointer &job)
{
    const auto file = RegularFile::open(job->path);
    if (!file || job->bound.isEmpty())
        return;
    if (isSettled(file->state())) {
        if (const auto image = cache.find(job->path, file->state(), job->bound)) {
            job->answer(fittedImage(*image, job->bound));
            return;
        }
    }
    const auto header = readImageHeader(*file);
    if (header && canDecode(header->format))
        makeOfImage(job, *file, *header);
    else if (header || !isNamedLikeAnImage(job->name) || !awaitWriter(job, *file))
        makeOfOther(job, *file);
}

void LinuxThumbnailGenerator::makeOfImage(const JobPointer &job, const RegularFile &file, const ImageHeader &header)
{
    if (isSettled(file.state()) && cache.hasFailure(job->path, file.state()))
        return;
    const auto sizeClass = ThumbnailCache::sizeClassFor(job->bound);
    const bool worthKeeping = sizeClass && qint64(header.size.width()) * header.size.height() >= kPixelsWorthKeeping;
    const QSize bound = worthKeeping ? QSize(sizeClass->pixels, sizeClass->pixels) : job->bound;
    const Decoding decoding = decodeImage(file, header, bound, [this] { return stopping.load(); });
    if (decoding.outcome == Decoding::Outcome::Complete) {
        answer(job, decoding.image, file, worthKeeping);
        return;
    }
    if (decoding.outcome == Decoding::Outcome::GivenUp)
        return;
    if (!decoding.image.isNull())
        answer(job, decoding.image, file, false);
    if (!awaitWriter(job, file) && decoding.image.isNull())
        cache.storeFailure(job->path, file.state());
}

void LinuxThumbnailGenerator::makeOfOther(const JobPointer &job, const RegularFile &file)
{
    if (file.state().size <= 0)
        return;
    QFile content;
    content.open(file.descriptor(), QIODevice::ReadOnly, QFileDevice::DontCloseHandle);
    content.seek(0);
    const QMimeType mimeType = QMimeDatabase().mimeTypeForFileNameAndData(job->name, &content);
    if (mimeType.name() != kSvgType) {
        askDesktop(job, mimeType.aliases() << mimeType.name());
        return;
    }
    if (file.state().size > kLargestSvg)
        return;
    const auto sizeClass = ThumbnailCache::sizeClassFor(job->bound);
    const bool worthKeeping = sizeClass && file.state().size >= kSvgWorthKeeping;
    const QSize bound = worthKeeping ? QSize(sizeClass->pixels, sizeClass->pixels) : job->bound;
    if (const auto image = renderSvg(file.read(0, file.state().size), bound))
        answer(job, *image, file, worthKeeping);
    else
        awaitWriter(job, file);
}

void LinuxThumbnailGenerator::askDesktop(const JobPointer &job, const QStringList &mimeTypes)
{
    const auto sizeClass = ThumbnailCache::sizeClassFor(job->bound);
    if (!sizeClass || !cache.covers(job->path))
        return;
    std::call_once(desktopStarted, [this] {
        // Made here, not on the main thread: connecting to the bus waits for its answer.
        desktop = new DesktopThumbnailer(QDBusConnection::sessionBus());
        desktop->moveToThread(&desktopThread);
        QObject::connect(&desktopThread, &QThread::finished, desktop, &QObject::deleteLater);
        desktopThread.start();
    });
    const auto done = [this, job](bool made) {
        if (!made)
            return;
        run([this, job] {
            const auto file = RegularFile::open(job->path);
            const auto image = file ? cache.find(job->path, file->state(), job->bound) : std::nullopt;
            if (image)
                job->answer(fittedImage(*image, job->bound));
        });
    };
    const QString uri = QString::fromLatin1(ThumbnailCache::uri(job->path));
    const QString flavor = QString::fromLatin1(sizeClass->name);
    QMetaObject::invokeMethod(
        desktop, [=, this] { desktop->request(uri, mimeTypes, flavor, done); }, Qt::QueuedConnection);
}

void LinuxThumbnailGenerator::answer(const JobPointer &job, const QImage &image, const RegularFile &file,
                                     bool worthKeeping)
{
    job->answer(fittedImage(image, job->bound));
    const FileState state = file.state();
    const auto sizeClass = ThumbnailCache::sizeClassFor(job->bound);
    if (!worthKeeping || !sizeClass || !isSettled(state) || file.currentState() != state)
        return;
    // After all pictures that somebody waits for.
    run([this, path = job->path, state, image, sizeClass] { cache.store(path, state, image, *sizeClass); },
        kLastPriority);
}

bool LinuxThumbnailGenerator::awaitWriter(const JobPointer &job, const RegularFile &file)
{
    const FileState state = file.state();
    if (job->retries >= kMostRetries || (age(state) >= kWritingTime && file.currentState() == state))
        return false;
    ++job->retries;
    job->answer({}); // so that there is something to see meanwhile
    mainQueue.async([this, job, state, stillThere = std::weak_ptr<bool>(alive)] {
        if (stillThere.expired())
            return;
        job->waits = writes.await(job->path, [this, job] { resume(job); });
        // It may have been finished before the watch began, or without one.
        if (const auto now = RegularFile::open(job->path); now && now->state() != state) {
            job->waits = true;
            resume(job);
        }
    });
    return true;
}

void LinuxThumbnailGenerator::resume(const JobPointer &job)
{
    if (std::exchange(job->waits, false))
        run([this, job] { work(job); });
}

bool LinuxThumbnailGenerator::isSettled(const FileState &state) const
{
    return age(state) >= kSettlingTime;
}

// Seconds from its last change, or to it where the clocks differ.
double LinuxThumbnailGenerator::age(const FileState &state) const
{
    constexpr double kMillisecondsPerSecond = 1000.0;
    const double now = double(mainQueue.currentDate().toMSecsSinceEpoch()) / kMillisecondsPerSecond;
    return std::abs(now - state.modified());
}
