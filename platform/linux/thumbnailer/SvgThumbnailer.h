// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>

#include <optional>

// The SVG drawing `svg` without anything that refers to the outside (linked pictures, style sheets, entities). Empty
// when it is no drawing, or nested or repeated so often that drawing it could exhaust the process.
QByteArray harmlessSvg(const QByteArray &svg);

// Draws `svg` to fit `bound` pixels. Nothing when it cannot be drawn. Blocks, so call it on a worker thread.
std::optional<QImage> renderSvg(const QByteArray &svg, const QSize &bound);
