// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>

#include <optional>

// An SVG drawing without what could reach outside it (linked pictures, style sheets, entities) and nothing but that;
// empty when it is no drawing, or so deep or so multiplied that drawing it could take the process down.
QByteArray harmlessSvg(const QByteArray &svg);

// The drawing made to fit `bound` pixels; nothing when it cannot be drawn. Blocks; for worker threads.
std::optional<QImage> renderSvg(const QByteArray &svg, const QSize &bound);
