// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/files/RegularFile.h"

#include <QByteArray>
#include <QImage>

#include <optional>

// The picture of an entry of the thumbnail cache, when the entry is a PNG of at most `pixels` each way that was made of
// the file `uri` in that very state.
std::optional<QImage> readCacheEntry(const RegularFile &entry, int pixels, const QByteArray &uri,
                                     const FileState &original);
