// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>

class QWidget;

// Places the views of a pane in rows, from the top to the bottom, within a margin. A row has the height of its first
// view; further views in the row are centred on that one. A right-to-left layout mirrors the rows.
class Rows {
public:
    Rows(QWidget &pane, int margin);

    // Each begins a row `gap` below the last one. `view` has its own size, at most `widest` ...
    void begin(QWidget &view, int gap, int widest);
    void begin(QWidget &view, int gap);
    // ... or the whole width and its own height ...
    void fill(QWidget &view, int gap);
    // ... or all the room that is left in the pane.
    void fillRest(QWidget &view, int gap);

    // Each continues the row `gap` after its last view. `view` has its own size ...
    void next(QWidget &view, int gap);
    // ... or the rest of the width, and the height that it needs at that width, at most `tallest`.
    void nextWrapped(QWidget &view, int gap, int tallest);

    // Ends the row with `view` in its own size.
    void end(QWidget &view);

    // The width of a row.
    int width() const { return right - left; }

private:
    void place(QWidget &view, const QRect &frame);
    void placeCentered(QWidget &view, int x, const QSize &size);
    static QSize wish(const QWidget &view);

    QWidget &pane;
    const int left;
    const int right;
    const int bottom;
    QRect row; // the frame of the row's first view
    int x = 0; // where the row's last view ends
};
