// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>

class QWidget;

// Places the views of a pane from its top to its bottom, within a margin. A row has the height of its first view; what
// follows that view in the row is centred on it. Where the language begins at the right, the rows do as well.
class Rows {
public:
    Rows(QWidget &pane, int margin);

    // Begins a row `gap` below the last one: with `view` in the size it wants, at most `widest` ...
    void begin(QWidget &view, int gap, int widest);
    void begin(QWidget &view, int gap);
    // ... over the whole width, in the height it wants ...
    void fill(QWidget &view, int gap);
    // ... or over all the room that is left in the pane.
    void fillRest(QWidget &view, int gap);

    // Goes on in the row, `gap` after its last view, with `view` in the size it wants ...
    void next(QWidget &view, int gap);
    // ... or over the rest of the width, in the height that this width takes, up to `tallest`.
    void nextWrapped(QWidget &view, int gap, int tallest);

    // Ends the row with `view` in the size it wants.
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
