// SPDX-License-Identifier: MIT
#pragma once

#include <QScrollBar>

// A slim light scroll bar without a groove, for dark panels.
class ShelfScroller : public QScrollBar {
    Q_OBJECT

public:
    explicit ShelfScroller(Qt::Orientation orientation, QWidget *parent = nullptr);

    // Makes the bar `extent` points thick and places it beside its content, also where the user's style has another
    // size or bars that lie over the content.
    void takeRoom(int extent);

protected:
    void paintEvent(QPaintEvent *event) override;
};
