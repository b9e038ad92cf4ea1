// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ColorArchive.h"

// A keyed archive of one NSColor.
class MacColorArchive : public ColorArchive {
public:
    std::optional<QByteArray> archive(const QColor &color) const override;
    std::optional<QColor> unarchive(const QByteArray &data) const override;
};
