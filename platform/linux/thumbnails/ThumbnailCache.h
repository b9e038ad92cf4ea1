// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/files/RegularFile.h"
#include "platform/linux/helpers/CacheClasses.h"
#include "platform/linux/helpers/PictureHelpers.h"

#include <QByteArray>
#include <QImage>
#include <QSize>

#include <optional>
#include <vector>

// The thumbnails that the desktop's programs share, as the freedesktop thumbnail specification lays them out: where the
// entries are, and what is in one. An entry counts only while its original has the very modification time (whole
// seconds) and size that it was made of. Reading them, which other programs wrote, and writing them is the helpers'
// business; no file is touched here.
class ThumbnailCache {
public:
    // `folder` holds the size folders. Use defaultFolder() for the user's own.
    explicit ThumbnailCache(QByteArray folder);

    static QByteArray defaultFolder();
    const QByteArray &path() const { return folder; }

    // The smallest class that pictures of `bound` pixels can be made of; nothing when none is large enough.
    static std::optional<CacheClass> sizeClassFor(const QSize &bound);

    // The URI that `path` is known by in the cache, byte for byte as the desktop's other programs write it.
    static QByteArray uri(const QByteArray &path);

    // Whether there can be entries for `path`; not for the entries themselves.
    bool covers(const QByteArray &path) const;

    // Where the entries would be that are at least as large as `bound`, the smallest first, and then the one that says
    // that this program can make nothing of the file. Other programs' failures are not ours.
    std::vector<PictureRequest::Entry> entries(const QByteArray &path, const QSize &bound) const;

    QByteArray entryPath(const QByteArray &subfolder, const QByteArray &path) const;
    QByteArray failurePath(const QByteArray &path) const;

    // What an entry is to hold. May be called on any thread.
    static QByteArray entryBytes(const QByteArray &path, const FileState &original, const QImage &image);
    static QByteArray failureBytes(const QByteArray &path, const FileState &original);

private:
    QByteArray folder;
};
