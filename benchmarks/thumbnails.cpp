// SPDX-License-Identifier: MIT
//
// Measures fifty photos dropped at once: the time until all have thumbnails, compared with a plain libjpeg-turbo decode
// at the same scale in as many processes of the same priority, including their start; the longest stop of the main
// loop; the memory of the pictures; and the time until the first thumbnail of a session.

#include "platform/common/QtMainQueue.h"
#include "platform/linux/thumbnails/LinuxThumbnailGenerator.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdio>
#include <memory>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

#include <jpeglib.h>

namespace {

constexpr int kPhotos = 50;
constexpr int kDifferentPictures = 5;
constexpr QSize kPhotoSize{6000, 4000};
constexpr double kEdge = 72;
constexpr QSize kThumbnailSize{72, 48};
constexpr int kRuns = 5;
// The same limits as in the generator.
constexpr int kMostProcesses = 4;
constexpr int kNiceness = 10;
constexpr auto kFloorArgument = "--floor";

// A photo of ordinary size: gradients with noise, so that no block is empty.
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

// Makes different files, last changed long enough ago for the cache.
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

// Decodes as a program would that has only the library: at the nearest larger scale.
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
    double longestGap = 0; // milliseconds between two turns of the main loop
};

// Runs the main loop, with a timer every millisecond, until `start`'s work has reported `count` times.
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
    loop.exec();
    run.seconds = double(total.nsecsElapsed()) / 1e9;
    return run;
}

Run measureGenerator(LinuxThumbnailGenerator &generator, MainQueue &queue, const QStringList &paths,
                     QList<QPixmap> &pictures)
{
    return measure(paths.size(), [&](const std::function<void()> &oneDone) {
        for (const QString &path : paths) {
            generator.generate(QUrl::fromLocalFile(path), kEdge, 1,
                               [&queue, &pictures, oneDone](std::optional<Thumbnail> thumbnail) {
                                   if (!thumbnail || thumbnail->image.size() != kThumbnailSize)
                                       qFatal("A photo has no thumbnail.");
                                   queue.async([&pictures, oneDone, image = std::move(thumbnail->image)] {
                                       pictures.append(QPixmap::fromImage(image));
                                       oneDone();
                                   });
                               });
        }
    });
}

int processes()
{
    return std::clamp(QThread::idealThreadCount(), 1, kMostProcesses);
}

// One process of the comparison. It reads numbers of photos, decodes them one at a time, and reports each.
int serveFloor()
{
    ::setpriority(PRIO_PROCESS, 0, kNiceness);
    QImage rows;
    std::array<char, PATH_MAX> path{};
    for (ssize_t size = 0; (size = ::read(STDIN_FILENO, path.data(), path.size())) > 0;) {
        decodePlainly(QString::fromUtf8(path.data(), size), rows);
        (void)!::write(STDOUT_FILENO, "+", 1);
    }
    return 0;
}

Run measurePlainDecode(const QString &program, const QStringList &paths)
{
    std::vector<std::unique_ptr<QProcess>> servers;
    qsizetype next = 0;
    const Run run = measure(paths.size(), [&](const std::function<void()> &oneDone) {
        for (int i = 0; i < processes(); ++i) {
            servers.push_back(std::make_unique<QProcess>());
            QProcess *server = servers.back().get();
            const auto feed = [&next, &paths, server] {
                if (next < paths.size())
                    server->write(paths.at(next++).toUtf8());
            };
            QObject::connect(server, &QProcess::readyReadStandardOutput, server, [server, feed, oneDone] {
                for (qsizetype done = server->readAllStandardOutput().size(); done > 0; --done) {
                    feed();
                    oneDone();
                }
            });
            server->start(program, {QString::fromLatin1(kFloorArgument)});
            feed();
        }
    });
    for (const auto &server : servers) {
        server->closeWriteChannel();
        server->waitForFinished();
    }
    return run;
}

// The proportional memory (PSS) of this process, in kB.
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

// Waits until the cache is filled, which happens after the last picture, and its memory is freed.
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

// The highest memory that any helper has used, in kB.
double helpersPeak(const LinuxThumbnailGenerator &generator)
{
    double most = 0;
    for (const pid_t process : generator.processes()) {
        QFile file(QStringLiteral("/proc/%1/status").arg(process));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        for (const QByteArray &line : file.readAll().split('\n')) {
            if (line.startsWith("VmHWM:"))
                most = std::max(most, line.mid(6).trimmed().split(' ').first().toDouble());
        }
    }
    return most;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc > 1 && qstrcmp(argv[1], kFloorArgument) == 0)
        return serveFloor();
    const QGuiApplication application(argc, argv);
    HelperProcess::lookIn(PARKLET_HELPERS);
    const QTemporaryDir folder;
    const QStringList paths = makePhotos(QDir(folder.path()));
    QtMainQueue queue;

    const auto newGenerator = [&](const QString &cache) {
        return std::make_unique<LinuxThumbnailGenerator>(queue, std::make_shared<FileHelpers>(queue),
                                                         QFile::encodeName(folder.filePath(cache)));
    };

    // The first picture also loads libraries. The others show the memory for each picture.
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
    const double peak = helpersPeak(*generator);

    QList<double> times;
    QList<double> floorTimes;
    QList<double> firstTimes;
    QList<double> firstFloorTimes;
    Run worst;
    Run worstFloor;
    for (int i = 0; i < kRuns; ++i) {
        const QString program = QCoreApplication::applicationFilePath();
        firstFloorTimes.append(measurePlainDecode(program, paths.first(1)).seconds);
        firstTimes.append(
            measureGenerator(*newGenerator(QStringLiteral("first-%1").arg(i)), queue, paths.first(1), pictures)
                .seconds);
        const Run floor = measurePlainDecode(program, paths);
        const Run run = measureGenerator(*newGenerator(QStringLiteral("cache-%1").arg(i)), queue, paths, pictures);
        pictures.clear();
        times.append(run.seconds);
        floorTimes.append(floor.seconds);
        worst.longestGap = std::max(worst.longestGap, run.longestGap);
        worstFloor.longestGap = std::max(worstFloor.longestGap, floor.longestGap);
    }

    std::printf("thumbnails of 50 photos of 24 megapixels\t%.3f\ts\t%.3f\t%.3f\tat most 1.05 x\n", median(times),
                median(floorTimes), median(times) / median(floorTimes));
    std::printf("the first thumbnail, helpers started\t%.1f\tms\t%.1f\t%.3f\t\n", median(firstTimes) * 1e3,
                median(firstFloorTimes) * 1e3, median(firstTimes) / median(firstFloorTimes));
    std::printf("longest gap in the main loop meanwhile\t%.1f\tms\t%.1f\t%.3f\tat most 8 ms\n", worst.longestGap,
                worstFloor.longestGap, worst.longestGap / worstFloor.longestGap);
    std::printf("memory of a thumbnail, among 50\t%.1f\tkB\t\t\tat most 150 kB\n", memory);
    std::printf("most memory of a helper meanwhile\t%.0f\tkB\t\t\tat most 98304 kB\n", peak);
    return 0;
}
