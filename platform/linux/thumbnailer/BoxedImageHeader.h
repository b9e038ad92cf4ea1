// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/thumbnailer/ImageHeader.h"

// Reads the header of an image whose file consists of boxes: HEIF with its kinds HEIC and AVIF, and JPEG 2000. `first`
// has the first bytes of `file`. Returns nothing for any other file, such as a film, and for one that ends before the
// image's size.
std::optional<ImageHeader> readBoxedImageHeader(const RegularFile &file, const QByteArray &first);
