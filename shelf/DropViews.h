// SPDX-License-Identifier: MIT
#pragma once

#include "shelf/DropTarget.h"

#include <QScrollArea>
#include <QWidget>

class ShelfScroller;

// The shelf's background as a drop target.
class DroppableView : public QWidget, public DropTarget {
    Q_OBJECT

public:
    explicit DroppableView(QWidget *parent = nullptr);

protected:
    void dragEnterEvent(QDragEnterEvent *event) override { draggingEntered(event); }
    void dragMoveEvent(QDragMoveEvent *event) override { draggingUpdated(event); }
    void dragLeaveEvent(QDragLeaveEvent *event) override { draggingExited(event); }
    void dropEvent(QDropEvent *event) override { performDragOperation(event); }
};

// Scrolls the tiles, and takes drops over them. The scroller of a column lies over the tiles, that of a row is below
// them.
class ShelfScrollView : public QScrollArea, public DropTarget {
    Q_OBJECT

public:
    // `scrollerWidth` is the width, in points, of a scroller that does not lie over its content.
    explicit ShelfScrollView(double scrollerWidth, QWidget *parent = nullptr);

    void setHorizontal(bool horizontal);

    // How much of the view's end is off the screen, in points. The scroller of a column ends before it.
    void setOffScreen(double atEnd);

protected:
    void dragEnterEvent(QDragEnterEvent *event) override { draggingEntered(event); }
    void dragMoveEvent(QDragMoveEvent *event) override { draggingUpdated(event); }
    void dragLeaveEvent(QDragLeaveEvent *event) override { draggingExited(event); }
    void dropEvent(QDropEvent *event) override { performDragOperation(event); }
    void wheelEvent(QWheelEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void placeOverlay();

    ShelfScroller *overlay;
    bool isRow = false;
    int offScreen = 0;
};
