// SPDX-License-Identifier: MIT
#pragma once

#include <QScrollBar>

// A scroll bar as a slim light bar without a groove, for dark panels.
class ShelfScroller : public QScrollBar {
    Q_OBJECT

public:
    explicit ShelfScroller(Qt::Orientation orientation, QWidget *parent = nullptr);

    // Makes it `extent` points thick and lets it take room, where the user's style has bars of another size or ones
    // that lie over what they scroll.
    void takeRoom(int extent);

protected:
    void paintEvent(QPaintEvent *event) override;
};
