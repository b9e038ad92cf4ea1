// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/files/RegularFile.h"

#include <QByteArray>
#include <QSize>

#include <optional>

// What the header of an image file states.
struct ImageHeader {
    QByteArray format;     // the name that QImageReader uses
    QSize size;            // pixels, before the orientation is applied
    bool streamed = false; // the decoder can scale it row by row and never holds the whole image
};

// The size that a header states. Nothing when it is larger than any image can be.
std::optional<QSize> pixelSize(quint64 width, quint64 height);

// Reads the header of a PNG, JPEG, GIF, BMP, WebP, TIFF, HEIF, JPEG 2000 or icon file. Returns nothing for any other
// file, and for one without a size. Reads a few small pieces, however large the file is.
std::optional<ImageHeader> readImageHeader(const RegularFile &file);
