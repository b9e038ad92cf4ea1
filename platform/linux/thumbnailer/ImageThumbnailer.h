// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/files/RegularFile.h"
#include "platform/linux/thumbnailer/ImageHeader.h"

#include <QImage>
#include <QSize>

// What became of decoding a file.
struct Decoding {
    enum class Outcome {
        Complete,
        Partial,  // the file ends before its picture does
        Broken,   // the file holds no picture that can be decoded
        TooLarge, // out of bounds
        GivenUp,  // too slow or unreadable; says nothing about what the file holds
    };

    Outcome outcome;
    QImage image; // null unless complete or partial
};

// The size of a picture of `size` that is made to fit `bound`: its aspect kept, nothing below one pixel, and never
// larger than it is.
QSize fittedPixelSize(const QSize &size, const QSize &bound);

// `image` made to fit `bound`, as plain 32-bit pixels without anything that its file said besides.
QImage fittedImage(const QImage &image, const QSize &bound);

// Keeps the image readers from printing what they think of broken files, for the whole program.
void silenceImageReaders();

// Whether the image readers of this system know `format`.
bool canDecode(const QByteArray &format);

// Whether making `header`'s picture small keeps within this program's bounds of time and memory.
bool isWithinDecodingBounds(const ImageHeader &header);

// The first picture of `file`, upright, made to fit `bound` pixels. It is decoded at about the size asked for wherever
// its format allows that. Reads no more of the file than a picture of its size can take.
Decoding decodeImage(const RegularFile &file, const ImageHeader &header, const QSize &bound);
