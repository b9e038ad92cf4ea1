// SPDX-License-Identifier: MIT
#include "platform/linux/thumbnails/ThumbnailCache.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QFile>
#include <QStandardPaths>
#include <QtEndian>

#include <glib.h>

#include <memory>

namespace {

constexpr auto kFailureFolder = "fail/parklet-" PARKLET_VERSION;

// The checksum of a PNG chunk.
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

// Makes uncompressed texts. QImageWriter compresses all but short ones.
QByteArray textChunk(const QByteArray &key, const QByteArray &text)
{
    const QByteArray content = "tEXt" + key + '\0' + text;
    return bigEndian(quint32(content.size() - 4)) + content + bigEndian(crc32(content));
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

std::optional<CacheClass> ThumbnailCache::sizeClassFor(const QSize &bound)
{
    for (const CacheClass &sizeClass : kCacheClasses) {
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

std::vector<PictureRequest::Entry> ThumbnailCache::entries(const QByteArray &path, const QSize &bound) const
{
    std::vector<PictureRequest::Entry> list;
    if (!covers(path))
        return list;
    for (const CacheClass &sizeClass : kCacheClasses) {
        if (bound.width() <= sizeClass.pixels && bound.height() <= sizeClass.pixels)
            list.push_back({entryPath(sizeClass.name, path), sizeClass.pixels});
    }
    list.push_back({failurePath(path), 0});
    return list;
}

QByteArray ThumbnailCache::failurePath(const QByteArray &path) const
{
    return entryPath(kFailureFolder, path);
}

QByteArray ThumbnailCache::entryBytes(const QByteArray &path, const FileState &original, const QImage &image)
{
    constexpr qsizetype kEndOfHeaderChunk = 33;
    QBuffer png;
    if (!png.open(QIODevice::WriteOnly) || !image.save(&png, "png"))
        return {};
    QByteArray bytes = png.data();
    bytes.insert(kEndOfHeaderChunk, textChunk("Thumb::URI", uri(path)) +
                                        textChunk("Thumb::MTime", QByteArray::number(original.modifiedSeconds)) +
                                        textChunk("Thumb::Size", QByteArray::number(original.size)) +
                                        textChunk("Software", "Parklet"));
    return bytes;
}

QByteArray ThumbnailCache::failureBytes(const QByteArray &path, const FileState &original)
{
    QImage nothing(1, 1, QImage::Format_ARGB32);
    nothing.fill(Qt::transparent);
    return entryBytes(path, original, nothing);
}
