// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/files/RegularFile.h"

#include <QByteArray>
#include <QSize>

#include <optional>

// What an image file says about itself before its pixels.
struct ImageHeader {
    QByteArray format;     // as QImageReader names it
    QSize size;            // pixels, the orientation not applied
    bool streamed = false; // its pixels come row by row, so that it can be made small without ever being whole
};

// A size as a header states it; nothing when it is larger than any image can be.
std::optional<QSize> pixelSize(quint64 width, quint64 height);

// Nothing for what is no PNG, JPEG, GIF, BMP, WebP, TIFF, HEIF, JPEG 2000 or icon file, or states no size. Costs a few
// small reads, however large the file is.
std::optional<ImageHeader> readImageHeader(const RegularFile &file);
