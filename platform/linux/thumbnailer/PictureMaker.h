// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/files/RegularFile.h"
#include "platform/linux/helpers/Protocol.h"

#include <QByteArray>
#include <QImage>
#include <QSize>

#include <optional>
#include <vector>

// A cache entry of a file. The entry that notes a failure has no pixels.
struct CachedEntry {
    int pixels;
    RegularFile file;
};

// A picture to make.
struct PictureOrder {
    PictureTask task;
    double edge; // points
    double scale;
    double now; // seconds since the epoch
    QByteArray uri;
    int kept; // pixels of the cache's class; 0 when the cache gets no entry
    std::vector<CachedEntry> entries;
};

struct MadePicture {
    PictureOutcome outcome;
    std::optional<QSize> pixelSize; // from the file's header
    QImage shown;
    QImage kept; // for the cache; null when it gets no entry
};

// Makes the picture. All files that it reads may be hostile.
MadePicture makePicture(const PictureOrder &order, const RegularFile &file);
