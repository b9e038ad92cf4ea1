// SPDX-License-Identifier: MIT
#include "platform/linux/thumbnails/ThumbnailCache.h"

#include "platform/linux/thumbnails/ImageHeader.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QFile>
#include <QImageReader>
#include <QStandardPaths>
#include <QtEndian>

#include <glib.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr std::array<ThumbnailCache::SizeClass, 4> kSizeClasses = {
    {{"normal", 128}, {"large", 256}, {"x-large", 512}, {"xx-large", 1024}}};
constexpr auto kFailureFolder = "fail/parklet-" PARKLET_VERSION;
constexpr mode_t kFolderMode = 0700;

// PNG's checksum of a chunk.
quint32 crc32(const QByteArray &bytes)
{
    constexpr quint32 kPolynomial = 0xedb88320;
    quint32 crc = 0xffffffff;
    for (const char byte : bytes) {
        crc ^= quint8(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ ((crc & 1) ? kPolynomial : 0);
    }
    return ~crc;
}

QByteArray bigEndian(quint32 number)
{
    QByteArray bytes(sizeof number, Qt::Uninitialized);
    qToBigEndian(number, bytes.data());
    return bytes;
}

// The keys go in uncompressed, which QImageWriter does for short texts only.
QByteArray textChunk(const QByteArray &key, const QByteArray &text)
{
    const QByteArray content = "tEXt" + key + '\0' + text;
    return bigEndian(quint32(content.size() - 4)) + content + bigEndian(crc32(content));
}

bool makeFolder(const QByteArray &path)
{
    struct stat info;
    if (::stat(path.constData(), &info) == 0)
        return S_ISDIR(info.st_mode);
    const auto slash = path.lastIndexOf('/');
    if (slash > 0 && !makeFolder(path.left(slash)))
        return false;
    return ::mkdir(path.constData(), kFolderMode) == 0 || errno == EEXIST;
}

// Entries appear whole or not at all: other programs read them at any moment.
bool writeAtomically(const QByteArray &path, const QByteArray &bytes)
{
    QByteArray temporary = path + ".XXXXXX";
    const int fd = ::mkostemp(temporary.data(), O_CLOEXEC);
    if (fd < 0)
        return false;
    QFile file;
    const bool written = file.open(fd, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle) &&
                         file.write(bytes) == bytes.size() && file.flush();
    file.close();
    if (written && ::rename(temporary.constData(), path.constData()) == 0)
        return true;
    ::unlink(temporary.constData());
    return false;
}

// Whether `text` is that modification time. Entries have whole seconds, but tumbler's have microseconds.
bool isModificationTime(const QString &text, const FileState &state)
{
    constexpr qint64 kNanosecondsPerMicrosecond = 1000;
    const auto point = std::max(text.indexOf(QLatin1Char('.')), text.indexOf(QLatin1Char(',')));
    if (point < 0)
        return text == QString::number(state.modifiedSeconds);
    constexpr qsizetype kDigits = 6;
    const qint64 microseconds = text.mid(point + 1, kDigits).leftJustified(kDigits, QLatin1Char('0')).toLongLong();
    // A double of today's seconds is exact to a quarter of a microsecond, and is then rounded.
    return text.left(point) == QString::number(state.modifiedSeconds) &&
           std::abs(microseconds - state.modifiedNanoseconds / kNanosecondsPerMicrosecond) <= 1;
}

bool isOf(const QImage &entry, const QByteArray &uri, const FileState &original)
{
    const QString size = entry.text(QStringLiteral("Thumb::Size"));
    return entry.text(QStringLiteral("Thumb::URI")).toUtf8() == uri &&
           isModificationTime(entry.text(QStringLiteral("Thumb::MTime")), original) &&
           (size.isEmpty() || size == QString::number(original.size));
}

// The entry in `path` when it is one, and no larger than `pixels` each way.
std::optional<QImage> readEntry(const QByteArray &path, int pixels, const QByteArray &uri, const FileState &original)
{
    const auto file = RegularFile::open(path);
    if (!file)
        return {};
    const auto header = readImageHeader(*file);
    if (!header || header->format != "png" || header->size.width() > pixels || header->size.height() > pixels)
        return {};
    QFile input;
    input.open(file->descriptor(), QIODevice::ReadOnly, QFileDevice::DontCloseHandle);
    input.seek(0);
    QImage image = QImageReader(&input, "png").read();
    if (image.isNull() || !isOf(image, uri, original))
        return {};
    return image;
}

} // namespace

ThumbnailCache::ThumbnailCache(QByteArray root)
    : folder(std::move(root))
{
}

QByteArray ThumbnailCache::defaultFolder()
{
    return QFile::encodeName(QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation)) + "/thumbnails";
}

std::optional<ThumbnailCache::SizeClass> ThumbnailCache::sizeClassFor(const QSize &bound)
{
    for (const SizeClass &sizeClass : kSizeClasses) {
        if (bound.width() <= sizeClass.pixels && bound.height() <= sizeClass.pixels)
            return sizeClass;
    }
    return {};
}

QByteArray ThumbnailCache::uri(const QByteArray &path)
{
    const std::unique_ptr<char, decltype(&g_free)> text(g_filename_to_uri(path.constData(), nullptr, nullptr), g_free);
    return text.get();
}

bool ThumbnailCache::covers(const QByteArray &path) const
{
    return !path.startsWith(folder + '/') && !uri(path).isEmpty();
}

QByteArray ThumbnailCache::entryPath(const QByteArray &subfolder, const QByteArray &path) const
{
    return folder + '/' + subfolder + '/' + QCryptographicHash::hash(uri(path), QCryptographicHash::Md5).toHex() +
           ".png";
}

std::optional<QImage> ThumbnailCache::find(const QByteArray &path, const FileState &original, const QSize &bound) const
{
    if (!covers(path))
        return {};
    for (const SizeClass &sizeClass : kSizeClasses) {
        if (bound.width() > sizeClass.pixels || bound.height() > sizeClass.pixels)
            continue;
        if (auto image = readEntry(entryPath(sizeClass.name, path), sizeClass.pixels, uri(path), original))
            return image;
    }
    return {};
}

bool ThumbnailCache::write(const QByteArray &subfolder, const QByteArray &path, const FileState &original,
                           const QImage &image) const
{
    constexpr qsizetype kEndOfHeaderChunk = 33;
    if (!covers(path) || !makeFolder(folder + '/' + subfolder))
        return false;
    QBuffer png;
    if (!png.open(QIODevice::WriteOnly) || !image.save(&png, "png"))
        return false;
    QByteArray bytes = png.data();
    bytes.insert(kEndOfHeaderChunk, textChunk("Thumb::URI", uri(path)) +
                                        textChunk("Thumb::MTime", QByteArray::number(original.modifiedSeconds)) +
                                        textChunk("Thumb::Size", QByteArray::number(original.size)) +
                                        textChunk("Software", "Parklet"));
    return writeAtomically(entryPath(subfolder, path), bytes);
}

bool ThumbnailCache::store(const QByteArray &path, const FileState &original, const QImage &image,
                           const SizeClass &sizeClass) const
{
    return write(sizeClass.name, path, original, image);
}

bool ThumbnailCache::storeFailure(const QByteArray &path, const FileState &original) const
{
    QImage nothing(1, 1, QImage::Format_ARGB32);
    nothing.fill(Qt::transparent);
    return write(kFailureFolder, path, original, nothing);
}

bool ThumbnailCache::hasFailure(const QByteArray &path, const FileState &original) const
{
    return covers(path) && readEntry(entryPath(kFailureFolder, path), 1, uri(path), original);
}
