// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/files/RegularFile.h"

#include <QByteArray>
#include <QImage>

#include <optional>

// The picture in an entry of the thumbnail cache. Nothing unless the entry is a PNG of at most `pixels` in each
// direction, made for the file `uri` in exactly this state.
std::optional<QImage> readCacheEntry(const RegularFile &entry, int pixels, const QByteArray &uri,
                                     const FileState &original);
