// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/files/RegularFile.h"
#include "platform/linux/thumbnailer/ImageHeader.h"

#include <QImage>
#include <QSize>

// The result of decoding a file.
struct Decoding {
    enum class Outcome {
        Complete,
        Partial,  // the file ends before its picture does
        Broken,   // the file holds no picture that can be decoded
        TooLarge, // beyond the bounds of time or memory
        GivenUp,  // too slow or unreadable, which says nothing about the contents
    };

    Outcome outcome;
    QImage image; // null unless complete or partial
};

// The size at which a picture of `size` fits `bound`, in pixels. Keeps the aspect ratio, never enlarges, and is at
// least one pixel in each direction.
QSize fittedPixelSize(const QSize &size, const QSize &bound);

// Scales `image` to fit `bound`, in 32-bit pixels and without the metadata of its file.
QImage fittedImage(const QImage &image, const QSize &bound);

// Suppresses the messages that the image readers print about broken files, for the whole process.
void silenceImageReaders();

// Whether an installed image reader supports `format`.
bool canDecode(const QByteArray &format);

// Whether decoding the picture of `header` stays within the bounds of time and memory.
bool isWithinDecodingBounds(const ImageHeader &header);

// Decodes the first picture of `file`, upright and scaled to fit `bound` pixels. Decodes at about that size where the
// format allows it. Reads no more of the file than a picture of its size can occupy.
Decoding decodeImage(const RegularFile &file, const ImageHeader &header, const QSize &bound);
