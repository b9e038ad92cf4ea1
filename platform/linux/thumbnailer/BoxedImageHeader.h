// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/thumbnailer/ImageHeader.h"

// The header of an image in a file made of boxes: HEIF with its kinds HEIC and AVIF, and JPEG 2000. `first` are the
// first bytes of `file`. Nothing for what is no such image, a film for instance, or ends before its size is stated.
std::optional<ImageHeader> readBoxedImageHeader(const RegularFile &file, const QByteArray &first);
