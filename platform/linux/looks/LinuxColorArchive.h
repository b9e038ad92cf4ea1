// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ColorArchive.h"

// A colour as a short record: a mark, its kind, and red, green, blue and alpha, big-endian. A component has 16 bits, or
// is a float for a colour outside the ordinary range.
class LinuxColorArchive : public ColorArchive {
public:
    std::optional<QByteArray> archive(const QColor &color) const override;
    std::optional<QColor> unarchive(const QByteArray &data) const override;
};
