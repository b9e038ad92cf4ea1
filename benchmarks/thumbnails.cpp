// SPDX-License-Identifier: MIT
//
// Fifty photos dropped at once: how long their thumbnails take beside a plain libjpeg-turbo decode at the same scale on
// as many threads of the same priority, how long the main loop stands still meanwhile, and what the pictures weigh.

#include "platform/common/QtMainQueue.h"
#include "platform/linux/thumbnails/LinuxThumbnailGenerator.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

#include <jpeglib.h>

namespace {

constexpr int kPhotos = 50;
constexpr int kDifferentPictures = 5;
constexpr QSize kPhotoSize{6000, 4000};
constexpr QSize kThumbnailSize{72, 48};
constexpr int kRuns = 5;
// As the generator has them.
constexpr int kMostThreads = 4;
constexpr int kNiceness = 10;

// Gradients with some noise: a photo of ordinary size, whose blocks are not empty.
QByteArray photo(quint32 seed)
{
    QImage image(kPhotoSize, QImage::Format_RGB32);
    quint32 noise = seed;
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            noise = noise * 1664525u + 1013904223u;
            const int grain = int(noise >> 28);
            line[x] = qRgb((x / 24 + grain) & 255, (y / 16 + grain) & 255, ((x + y) / 40 + grain) & 255);
        }
    }
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("photo.jpg"));
    image.save(path, "jpeg", 85);
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Files of different contents, last changed long enough ago for the cache.
QStringList makePhotos(const QDir &folder)
{
    QStringList paths;
    QByteArray encoded;
    for (int i = 0; i < kPhotos; ++i) {
        if (i % (kPhotos / kDifferentPictures) == 0)
            encoded = photo(quint32(i));
        QByteArray contents = encoded;
        contents.insert(2, QByteArray("\xff\xfe\0\x04", 4) + QByteArray::number(i).rightJustified(2));
        QFile file(folder.filePath(QStringLiteral("%1.jpg").arg(i)));
        if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size())
            qFatal("The photos cannot be written.");
        file.flush();
        file.setFileTime(QDateTime::currentDateTime().addDays(-1), QFileDevice::FileModificationTime);
        paths.append(file.fileName());
    }
    return paths;
}

// What a program would do that has nothing but the library: decode at the scale nearest above the size asked for.
void decodePlainly(const QString &path, QImage &rows)
{
    FILE *file = std::fopen(QFile::encodeName(path).constData(), "rb");
    if (!file)
        qFatal("A photo cannot be read.");
    jpeg_decompress_struct info;
    jpeg_error_mgr error;
    info.err = jpeg_std_error(&error);
    jpeg_create_decompress(&info);
    jpeg_stdio_src(&info, file);
    jpeg_read_header(&info, TRUE);
    info.scale_num = 1;
    info.scale_denom = 8;
    info.out_color_space = JCS_EXT_BGRX;
    jpeg_start_decompress(&info);
    rows = QImage(int(info.output_width), int(info.output_height), QImage::Format_RGB32);
    while (info.output_scanline < info.output_height) {
        JSAMPROW row = rows.scanLine(int(info.output_scanline));
        jpeg_read_scanlines(&info, &row, 1);
    }
    jpeg_finish_decompress(&info);
    jpeg_destroy_decompress(&info);
    std::fclose(file);
}

struct Run {
    double seconds = 0;
    double processorSeconds = 0; // of all threads of this program
    double longestGap = 0;       // milliseconds between two turns of the main loop
};

double processorSeconds()
{
    rusage usage;
    ::getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           1e-6 * double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec);
}

// Lets the main loop turn every millisecond until `start`'s work has said `count` times that one more is done.
Run measure(qsizetype count, const std::function<void(std::function<void()> oneDone)> &start)
{
    Run run;
    qsizetype open = count;
    QEventLoop loop;
    QElapsedTimer total;
    QElapsedTimer sinceTurn;
    QTimer turns;
    turns.setTimerType(Qt::PreciseTimer);
    turns.setInterval(1);
    const auto turn = [&] {
        run.longestGap = std::max(run.longestGap, double(sinceTurn.nsecsElapsed()) / 1e6);
        sinceTurn.start();
    };
    QObject::connect(&turns, &QTimer::timeout, &turns, turn);
    turns.start();
    QTimer::singleShot(0, &loop, [&] {
        total.start();
        sinceTurn.start();
        start([&] {
            turn();
            if (--open == 0)
                loop.quit();
        });
    });
    const double before = processorSeconds();
    loop.exec();
    run.processorSeconds = processorSeconds() - before;
    run.seconds = double(total.nsecsElapsed()) / 1e9;
    return run;
}

Run measureGenerator(LinuxThumbnailGenerator &generator, MainQueue &queue, const QStringList &paths,
                     QList<QPixmap> &pictures)
{
    return measure(paths.size(), [&](const std::function<void()> &oneDone) {
        for (const QString &path : paths) {
            const QUrl url = QUrl::fromLocalFile(path);
            if (generator.imagePixelSize(url) != kPhotoSize)
                qFatal("A photo's size is wrong.");
            generator.generate(url, kThumbnailSize, 1, [&queue, &pictures, oneDone](std::optional<QImage> image) {
                if (!image || image->size() != kThumbnailSize)
                    qFatal("A photo has no thumbnail.");
                queue.async([&pictures, oneDone, image = std::move(*image)] {
                    pictures.append(QPixmap::fromImage(image));
                    oneDone();
                });
            });
        }
    });
}

Run measurePlainDecode(MainQueue &queue, const QStringList &paths)
{
    std::vector<std::thread> threads;
    std::atomic<int> next = 0;
    const Run run = measure(paths.size(), [&](const std::function<void()> &oneDone) {
        for (int i = 0; i < std::clamp(QThread::idealThreadCount(), 1, kMostThreads); ++i) {
            threads.emplace_back([&, oneDone] {
                ::setpriority(PRIO_PROCESS, id_t(::gettid()), kNiceness);
                QImage rows;
                for (int photo = next++; photo < paths.size(); photo = next++) {
                    decodePlainly(paths.at(photo), rows);
                    queue.async(oneDone);
                }
            });
        }
    });
    for (std::thread &thread : threads)
        thread.join();
    return run;
}

double microsecondsForASize(const LinuxThumbnailGenerator &generator, const QStringList &paths)
{
    QElapsedTimer timer;
    timer.start();
    for (const QString &path : paths)
        generator.imagePixelSize(QUrl::fromLocalFile(path));
    return double(timer.nsecsElapsed()) / 1e3 / double(paths.size());
}

// The memory that is this process's share, in kB.
double proportionalMemory()
{
    QFile file(QStringLiteral("/proc/self/smaps_rollup"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith("Pss:"))
            return line.mid(4).trimmed().split(' ').first().toDouble();
    }
    return 0;
}

// The cache is filled after the last picture has come, and what that took is given back a moment later.
void waitForEntries(const QDir &cache, qsizetype count)
{
    constexpr int kMoment = 500; // milliseconds
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (cache.entryList({QStringLiteral("*.png")}, QDir::Files).size() == count) {
            poll.stop();
            QTimer::singleShot(kMoment, &loop, &QEventLoop::quit);
        }
    });
    poll.start(kMoment / 10);
    loop.exec();
}

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

} // namespace

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    const QTemporaryDir folder;
    const QStringList paths = makePhotos(QDir(folder.path()));
    QtMainQueue queue;

    const auto newGenerator = [&](const QString &cache) {
        return std::make_unique<LinuxThumbnailGenerator>(queue, QFile::encodeName(folder.filePath(cache)));
    };

    // With the first picture comes what is loaded once; the others are what is added.
    QList<QPixmap> pictures;
    const auto generator = newGenerator(QStringLiteral("cache"));
    const QDir cache(folder.filePath(QStringLiteral("cache/normal")));
    measureGenerator(*generator, queue, paths.first(1), pictures);
    waitForEntries(cache, 1);
    const double before = proportionalMemory();
    measureGenerator(*generator, queue, paths.sliced(1), pictures);
    waitForEntries(cache, paths.size());
    const double memory = (proportionalMemory() - before) / double(paths.size() - 1);
    pictures.clear();
    const double sizeTime = microsecondsForASize(*generator, paths);

    QList<double> times;
    QList<double> floorTimes;
    QList<double> processorTimes;
    QList<double> floorProcessorTimes;
    Run worst;
    Run worstFloor;
    for (int i = 0; i < kRuns; ++i) {
        const Run floor = measurePlainDecode(queue, paths);
        const Run run = measureGenerator(*newGenerator(QStringLiteral("cache-%1").arg(i)), queue, paths, pictures);
        pictures.clear();
        times.append(run.seconds);
        floorTimes.append(floor.seconds);
        processorTimes.append(run.processorSeconds);
        floorProcessorTimes.append(floor.processorSeconds);
        worst.longestGap = std::max(worst.longestGap, run.longestGap);
        worstFloor.longestGap = std::max(worstFloor.longestGap, floor.longestGap);
    }

    std::printf("thumbnails of 50 photos of 24 megapixels\t%.3f\ts\t%.3f\t%.3f\tat most 1.3 x\n", median(times),
                median(floorTimes), median(times) / median(floorTimes));
    // Says the same where other programs take part of the processors.
    std::printf("processor time for them\t%.3f\ts\t%.3f\t%.3f\t\n", median(processorTimes), median(floorProcessorTimes),
                median(processorTimes) / median(floorProcessorTimes));
    std::printf("longest gap in the main loop meanwhile\t%.1f\tms\t%.1f\t%.3f\tat most 16 ms\n", worst.longestGap,
                worstFloor.longestGap, worst.longestGap / worstFloor.longestGap);
    std::printf("memory of a thumbnail, among 50\t%.1f\tkB\t\t\tat most 150 kB\n", memory);
    std::printf("the pixel size of a photo\t%.1f\tus\t\t\tat most 300 us\n", sizeTime);
    return 0;
}
