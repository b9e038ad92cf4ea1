// SPDX-License-Identifier: MIT
//
// parklet-thumbnailer makes small pictures of files that are already open, in a process that may crash. It receives
// orders on one socket, answers on another with pixels in sealed memory, and may do hardly anything else. With "--
// drawings" it draws SVG files, and may read fonts.

#include "platform/linux/helpers/Channel.h"
#include "platform/linux/helpers/Message.h"
#include "platform/linux/helpers/Protocol.h"
#include "platform/linux/thumbnailer/Confinement.h"
#include "platform/linux/thumbnailer/ImageThumbnailer.h"
#include "platform/linux/thumbnailer/PictureMaker.h"

#include <QBuffer>
#include <QDir>
#include <QGuiApplication>
#include <QImageReader>
#include <QPainter>
#include <QStandardPaths>
#include <QThreadPool>

#include <cstring>
#include <malloc.h>
#include <memory>
#include <poll.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

// With this nice value, the main thread of the shelf gets nine tenths of a core that both share.
constexpr int kNiceness = 10;
constexpr unsigned kStack = 4 << 20; // bytes
// Together with its libraries, a helper uses less than 96 MB.
constexpr std::uint64_t kMemoryForPictures = 74 << 20;
constexpr std::uint64_t kMemoryForDrawings = 64 << 20;
constexpr int kLargestKeptBlock = 1 << 20; // bytes; larger freed blocks are returned to the system at once

double processorSeconds()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           1e-6 * double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec);
}

void addImage(MessageWriter &report, const QImage &image)
{
    report.add(std::int32_t(image.width())).add(std::int32_t(image.height()));
    report.add(static_cast<std::uint8_t>(image.hasAlphaChannel() ? 1 : 0));
}

void addPixels(QByteArray &pixels, const QImage &image)
{
    for (int y = 0; y < image.height(); ++y)
        pixels.append(reinterpret_cast<const char *>(image.constScanLine(y)), qsizetype(image.width()) * 4);
}

// Makes one picture and sends the result with its pixels. False when the shelf is gone or has sent an invalid message.
bool serve(Received received)
{
    MessageReader message(received.bytes);
    const auto state = message.take<FileStateRecord>();
    const auto count = message.take<std::uint32_t>();
    std::vector<bool> present;
    for (std::uint32_t i = 0; i < count && !message.hasFailed(); ++i)
        present.push_back(message.take<std::uint8_t>() != 0);
    const auto id = message.take<std::uint64_t>();
    PictureOrder order{};
    order.task = message.take<PictureTask>();
    order.edge = message.take<double>();
    order.scale = message.take<double>();
    order.now = message.take<double>();
    order.kept = message.take<std::int32_t>();
    order.uri = QByteArray::fromStdString(message.takeBytes());
    size_t next = 1;
    for (const bool isThere : present) {
        const int pixels = message.take<std::int32_t>();
        if (!isThere || next >= received.descriptors.size())
            continue;
        if (auto entry = RegularFile::adopt(received.descriptors[next++].release()))
            order.entries.push_back({pixels, std::move(*entry)});
    }
    if (message.hasFailed() || received.descriptors.empty())
        return false;
    if (!sendMessage(kShelfSocket, MessageWriter().add(PictureNews::Begun).add(id).add(state).bytes()))
        return false;

    const auto file = RegularFile::adopt(received.descriptors.front().release());
    const MadePicture picture = file ? makePicture(order, *file) : MadePicture{PictureOutcome::GivenUp, {}, {}, {}};
    MessageWriter report;
    const FileState now = file ? file->currentState() : FileState();
    report.add(PictureNews::Report).add(id).add(picture.outcome);
    report.add(FileStateRecord{now.size, now.modifiedSeconds, now.modifiedNanoseconds});
    const QSize size = picture.pixelSize.value_or(QSize(-1, -1));
    report.add(std::int32_t(size.width())).add(std::int32_t(size.height()));
    const QImage kept = fittedImage(picture.kept, picture.kept.size());
    addImage(report, picture.shown);
    addImage(report, kept);
    report.add(processorSeconds());
    if (picture.shown.isNull())
        return sendMessage(kShelfSocket, report.bytes());
    QByteArray pixels;
    addPixels(pixels, picture.shown);
    addPixels(pixels, kept);
    const Descriptor memory = sealedMemory("parklet-picture", pixels.constData(), static_cast<size_t>(pixels.size()));
    return memory.isOpen() && sendMessage(kShelfSocket, report.bytes(), {memory.get()});
}

void serveAll()
{
    for (;;) {
        pollfd sockets[] = {{kPicturesSocket, POLLIN, 0}, {kShelfSocket, POLLIN, 0}};
        // The shelf sends nothing on its socket; the socket only reports that the shelf is gone or wants no more
        // pictures.
        if (::poll(sockets, 2, -1) < 0 || sockets[1].revents != 0)
            return;
        if (sockets[0].revents == 0)
            continue;
        Received received = receiveMessage(kPicturesSocket);
        if (received.kind != Received::Kind::Message || !serve(std::move(received)))
            return;
    }
}

// Loads the plugins now that Qt loads on first use. Later the confinement forbids it.
void loadImageReaders()
{
    for (const char *format : {"png", "jpeg", "gif", "bmp", "webp", "tiff", "ico", "heif", "avif", "jp2"}) {
        QBuffer nothing;
        nothing.open(QIODevice::ReadOnly);
        QImageReader reader(&nothing, format);
        reader.setAutoDetectImageFormat(false);
        reader.canRead();
    }
    canDecode("png");
}

// Drawing one letter makes Qt search for fonts.
void loadFonts()
{
    QImage canvas(8, 8, QImage::Format_ARGB32_Premultiplied);
    QPainter(&canvas).drawText(0, 8, QStringLiteral("a"));
}

std::vector<std::string> fontFolders()
{
    std::vector<std::string> folders = {"/usr/share/fonts", "/usr/local/share/fonts", "/usr/share/fontconfig",
                                        "/etc/fonts", "/var/cache/fontconfig"};
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    const QString cache = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    for (const QString &folder : {data + QStringLiteral("/fonts"), QDir::homePath() + QStringLiteral("/.fonts"),
                                  cache + QStringLiteral("/fontconfig"), config + QStringLiteral("/fontconfig")})
        folders.push_back(QFile::encodeName(folder).toStdString());
    return folders;
}

} // namespace

int main(int argc, char **argv)
{
    const bool draws = argc == 2 && std::strcmp(argv[1], "--drawings") == 0;
    beginHelper(kPicturesSocket + 1);
    ::mallopt(M_ARENA_MAX, 1);
    ::mallopt(M_MMAP_THRESHOLD, kLargestKeptBlock);
    ::mallopt(M_TRIM_THRESHOLD, kLargestKeptBlock);
    silenceImageReaders();

    Confinement confinement;
    std::unique_ptr<QGuiApplication> application;
    loadImageReaders();
    if (draws) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        int count = 1;
        application = std::make_unique<QGuiApplication>(count, argv);
        loadFonts();
        confinement.opensFiles = true;
        confinement.readable = fontFolders();
    }
    confinement.memory = (draws ? kMemoryForDrawings : kMemoryForPictures) + kStack;
    if (!confineFileSystem(confinement))
        return 1;
    // Qt divides the work on a picture among the threads of its pool, except when a thread of the pool does it.
    QThreadPool *pool = QThreadPool::globalInstance();
    pool->setStackSize(kStack);
    bool isConfined = false;
    pool->start([&] {
        // This fails, harmlessly, when the whole session has a higher nice value.
        ::setpriority(PRIO_PROCESS, 0, kNiceness);
        isConfined = confineProcess(confinement);
        if (isConfined)
            serveAll();
        // Exit without destructors: nothing needs them, and the confinement forbids some of their system calls.
        ::_exit(isConfined ? 0 : 1);
    });
    pool->waitForDone();
    return 1;
}
