// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QList>
#include <QSizeF>
#include <QWidget>

class ShelfItemView;

// The tiles of the shelf, in item order, in a column or a row: 6 points apart and 6 points from the stack's edges,
// centred across. Each tile has the width and height it was given.
class ShelfStackView : public QWidget {
    Q_OBJECT

public:
    explicit ShelfStackView(QWidget *parent = nullptr);

    const QList<ShelfItemView *> &arrangedSubviews() const { return tiles; }

    // Appends a tile of `size` points and owns it.
    void addArrangedSubview(ShelfItemView *tile, const QSizeF &size);

    // Removes the tile and deletes it in a later turn of the main loop.
    void removeArrangedSubview(ShelfItemView *tile);

    // Changes the height of every tile and keeps the widths.
    void setTileHeight(double height);

    bool isHorizontal() const { return horizontal; }
    void setHorizontal(bool value);

    // How much of the list is off the screen at its start and at its end, in points. There the tiles have so much room
    // more, so that each can be scrolled to where it is seen.
    void setOffScreen(double atStart, double atEnd);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void arrange();

    QList<ShelfItemView *> tiles;
    QHash<ShelfItemView *, QSizeF> sizes;
    bool horizontal = false;
    double offScreenAtStart = 0;
    double offScreenAtEnd = 0;
};
