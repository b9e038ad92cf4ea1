// SPDX-License-Identifier: MIT
#pragma once

#include "settings/SettingsTable.h"

#include <QPointF>
#include <QRectF>
#include <QSizeF>

// The arithmetic of the shelf, in points. Unless a comment says otherwise, frames have their origin at the bottom left
// and y grows upwards. flipped() converts from and to Qt's coordinates. The sizes are in ShelfMetrics.h.

// Converts a frame or point in a space of `height` points from bottom-left to top-left coordinates, or back.
QRectF flipped(const QRectF &frame, double height);
QPointF flipped(const QPointF &point, double height);

// A frame in whole points, for a window or view.
QRect wholePoints(const QRectF &frame);

// Whether the tiles stand in a row (top and bottom edge) instead of a column.
bool isHorizontal(WindowEdge edge);

// By how much a tile is higher than the item size, for its name and margins.
double labelReserve(FileNameDisplay names);

// The size of a new tile.
QSizeF tileSize(double itemSize, FileNameDisplay names);

// The frame of the shelf, with room for 1 to 10 tiles. The place is computed before a size too large for the screen is
// cut, so a cut shelf stands where the uncut one would. `scrollerWidth` is that of a scroller beside its content.
QRectF shelfFrame(const QRectF &visibleFrame, WindowEdge edge, WindowAlignment alignment, double itemSize,
                  double reserve, qsizetype itemCount, double scrollerWidth);

// The frames of the shelf's views inside it, in Qt's coordinates.
struct ShelfLayout {
    QRectF headerBar;
    QRectF gearBtn; // the buttons are inside headerBar
    QRectF selectAllBtn;
    QRectF trashBtn;
    QRectF sepLine;
    QRectF scrollView;
};
ShelfLayout shelfLayout(const QSizeF &size, Qt::Orientation orientation);

// The frames of a tile's views inside it.
struct TileLayout {
    QRectF imageView;
    QRectF nameLabel; // hangs 5 points below the tile
    QRectF removeBtn;
};
TileLayout tileLayout(const QSizeF &size, FileNameDisplay names);

// The frame of the cursor shelf: beside the pointer, and at least 4 points inside the visible frame.
QRectF cursorShelfFrame(const QPointF &pointer, const QRectF &visibleFrame);
