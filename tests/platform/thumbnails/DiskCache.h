// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/thumbnailer/CacheEntry.h"
#include "platform/linux/thumbnailer/KeptFile.h"
#include "platform/linux/thumbnails/ThumbnailCache.h"

#include <QImage>

#include <optional>

// The cache together with the helpers' work: reading entries and writing them.
class DiskCache : public ThumbnailCache {
public:
    using ThumbnailCache::ThumbnailCache;

    // The smallest valid entry that is at least as large as `bound`.
    std::optional<QImage> find(const QByteArray &path, const FileState &original, const QSize &bound) const
    {
        for (const PictureRequest::Entry &entry : entries(path, bound)) {
            if (entry.pixels == 0)
                continue;
            if (auto image = read(entry.path, entry.pixels, path, original))
                return image;
        }
        return {};
    }

    bool hasFailure(const QByteArray &path, const FileState &original) const
    {
        return covers(path) && read(failurePath(path), 1, path, original);
    }

    bool store(const QByteArray &path, const FileState &original, const QImage &image,
               const CacheClass &sizeClass) const
    {
        return covers(path) && write(entryPath(sizeClass.name, path), entryBytes(path, original, image));
    }

    bool storeFailure(const QByteArray &path, const FileState &original) const
    {
        return covers(path) && write(failurePath(path), failureBytes(path, original));
    }

private:
    static std::optional<QImage> read(const QByteArray &entry, int pixels, const QByteArray &path,
                                      const FileState &original)
    {
        const auto file = RegularFile::open(entry);
        return file ? readCacheEntry(*file, pixels, uri(path), original) : std::nullopt;
    }

    static bool write(const QByteArray &entry, const QByteArray &bytes)
    {
        return keepFile(entry.toStdString(), bytes.toStdString());
    }
};
