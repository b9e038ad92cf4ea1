// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QColor>

#include <optional>

// Converts a colour to bytes for the settings store, and back.
class ColorArchive {
public:
    virtual ~ColorArchive() = default;

    // The archived colour, or nothing when it cannot be archived (an invalid colour).
    virtual std::optional<QByteArray> archive(const QColor &color) const = 0;

    // The colour in `data`. Nothing unless `data` holds exactly one colour and nothing else.
    virtual std::optional<QColor> unarchive(const QByteArray &data) const = 0;
};
