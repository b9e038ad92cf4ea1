// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/files/RegularFile.h"
#include "platform/linux/helpers/Protocol.h"

#include <QByteArray>
#include <QImage>
#include <QSize>

#include <optional>
#include <vector>

// An entry that the cache has of a file; the one that says that nothing can be made of it has no pixels.
struct CachedEntry {
    int pixels;
    RegularFile file;
};

// A picture that is to be made.
struct PictureOrder {
    PictureTask task;
    double edge; // points
    double scale;
    double now; // seconds since the epoch
    QByteArray uri;
    int kept; // pixels of the cache's class; 0 where nothing is to be kept
    std::vector<CachedEntry> entries;
};

struct MadePicture {
    PictureOutcome outcome;
    std::optional<QSize> pixelSize; // what the file's header says
    QImage shown;
    QImage kept; // for the cache; null when it is not to have it
};

// Does the order. All the contents that it looks at may be hostile.
MadePicture makePicture(const PictureOrder &order, const RegularFile &file);
