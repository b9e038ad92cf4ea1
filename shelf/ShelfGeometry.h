// SPDX-License-Identifier: MIT
#pragma once

#include "settings/SettingsTable.h"

#include <QPointF>
#include <QRectF>
#include <QSizeF>

#include <optional>

// The arithmetic of the shelf, in points. Frames have their origin at the bottom left and y grows upwards, unless
// said otherwise; flipped() is the one way from and to Qt's coordinates.

// A frame or point in a space `height` points high, from bottom-left to top-left coordinates or back.
QRectF flipped(const QRectF &frame, double height);
QPointF flipped(const QPointF &point, double height);

// A frame as whole points, as a window or view takes it.
QRect wholePoints(const QRectF &frame);

// Whether the tiles stand in a row (top and bottom edge) instead of a column.
bool isHorizontal(WindowEdge edge);

// What a tile is higher than the item size, for its name and margins.
double labelReserve(FileNameDisplay names);

// The size a new tile gets.
QSizeF tileSize(double itemSize, FileNameDisplay names);

// Where the shelf stands. The size has room for 1 to 10 tiles; one too large for the screen is cut only after the
// place was fixed, so a cut shelf keeps the place of the uncut one. `scrollerWidth` is that of a scroller that takes
// room beside its content.
QRectF shelfFrame(const QRectF &visibleFrame, WindowEdge edge, WindowAlignment alignment, double itemSize,
                  double reserve, qsizetype itemCount, double scrollerWidth);

// Where the views of the shelf stand inside it, in Qt's coordinates.
struct ShelfLayout {
    QRectF headerBar;
    QRectF gearBtn; // the buttons are placed within headerBar
    QRectF selectAllBtn;
    QRectF trashBtn;
    QRectF sepLine;
    QRectF scrollView;
};
ShelfLayout shelfLayout(const QSizeF &size, Qt::Orientation orientation);

// Where the views of a tile stand inside it.
struct TileLayout {
    QRectF imageView;
    QRectF nameLabel; // hangs 5 points below the tile
    QRectF removeBtn;
};
TileLayout tileLayout(const QSizeF &size, FileNameDisplay names);

// The size in points at which the thumbnail of a file is requested, from the pixel size of its image: fitted into a
// square of `itemSize`, halves rounded away from zero. The whole square for what is no image.
QSizeF fittedThumbnailSize(double itemSize, const std::optional<QSizeF> &pixelSize);

// Where the cursor shelf stands beside the pointer, kept 4 points inside the visible frame.
QRectF cursorShelfFrame(const QPointF &pointer, const QRectF &visibleFrame);
