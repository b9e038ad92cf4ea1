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

// The thumbnail cache that all programs of the desktop share, after the freedesktop thumbnail specification: where its
// entries are, and what an entry contains. An entry is valid only while its file has the modification time (whole
// seconds) and the size for which it was made. This class touches no file; helpers read and write the entries.
class ThumbnailCache {
public:
    // `folder` contains the folders of the sizes. Use defaultFolder() for the user's cache.
    explicit ThumbnailCache(QByteArray folder);

    static QByteArray defaultFolder();
    const QByteArray &path() const { return folder; }

    // The smallest class whose entries are at least `bound` pixels. Nothing when no class is large enough.
    static std::optional<CacheClass> sizeClassFor(const QSize &bound);

    // The URI of `path` in the cache, byte for byte as the desktop's other programs write it.
    static QByteArray uri(const QByteArray &path);

    // Whether the cache may have entries for `path`. It has none for its own entries.
    bool covers(const QByteArray &path) const;

    // The entries of `path` that are at least as large as `bound`, whether they exist or not: the smallest first, and
    // last the entry with which this program notes that it cannot make a thumbnail. The failures of other programs are
    // ignored.
    std::vector<PictureRequest::Entry> entries(const QByteArray &path, const QSize &bound) const;

    QByteArray entryPath(const QByteArray &subfolder, const QByteArray &path) const;
    QByteArray failurePath(const QByteArray &path) const;

    // The contents of an entry. May be called on any thread.
    static QByteArray entryBytes(const QByteArray &path, const FileState &original, const QImage &image);
    static QByteArray failureBytes(const QByteArray &path, const FileState &original);

private:
    QByteArray folder;
};
