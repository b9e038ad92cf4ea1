// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QColor>

#include <optional>

// Turns one colour into bytes for the settings store and back.
class ColorArchive {
public:
    virtual ~ColorArchive() = default;

    // The archived colour, or nothing when it cannot be archived (an invalid colour).
    virtual std::optional<QByteArray> archive(const QColor &color) const = 0;

    // The colour in `data`, or nothing unless it holds exactly one colour and nothing else.
    virtual std::optional<QColor> unarchive(const QByteArray &data) const = 0;
};
