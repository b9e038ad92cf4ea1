// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/files/RegularFile.h"

#include <QByteArray>
#include <QImage>
#include <QSize>

#include <optional>

// The thumbnails that the desktop's programs share, as the freedesktop thumbnail specification lays them out. An entry
// counts only while its original has the very modification time (whole seconds) and size that it was made of. Calls
// block on the disk; they may be made on any thread.
class ThumbnailCache {
public:
    // One folder of entries that fit a square of `pixels`.
    struct SizeClass {
        const char *name;
        int pixels;
    };

    // `folder` holds the size folders; it is made when first needed. Use defaultFolder() for the user's own.
    explicit ThumbnailCache(QByteArray folder);

    static QByteArray defaultFolder();

    // The smallest class that pictures of `bound` pixels can be made of; nothing when none is large enough.
    static std::optional<SizeClass> sizeClassFor(const QSize &bound);

    // The URI that `path` is known by in the cache, byte for byte as the desktop's other programs write it.
    static QByteArray uri(const QByteArray &path);

    // Whether there can be entries for `path`; not for the entries themselves.
    bool covers(const QByteArray &path) const;

    // The valid entry that is at least as large as `bound` but no larger than needed, as it is stored.
    std::optional<QImage> find(const QByteArray &path, const FileState &original, const QSize &bound) const;

    // Keeps `image` as the entry of that class. False when it could not be written; an earlier entry is then as it was.
    bool store(const QByteArray &path, const FileState &original, const QImage &image,
               const SizeClass &sizeClass) const;

    // Remembers that this program can make nothing of the file as it is now. Other programs' failures are not ours.
    bool storeFailure(const QByteArray &path, const FileState &original) const;
    bool hasFailure(const QByteArray &path, const FileState &original) const;

private:
    QByteArray entryPath(const QByteArray &subfolder, const QByteArray &path) const;
    bool write(const QByteArray &subfolder, const QByteArray &path, const FileState &original,
               const QImage &image) const;

    QByteArray folder;
};
