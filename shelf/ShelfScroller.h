// SPDX-License-Identifier: MIT
#pragma once

#include <QScrollBar>

// A scroll bar as a slim light bar without a groove, for dark panels.
class ShelfScroller : public QScrollBar {
    Q_OBJECT

public:
    explicit ShelfScroller(Qt::Orientation orientation, QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};
