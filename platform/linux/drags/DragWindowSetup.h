// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPixmap>
#include <QRegion>
#include <QWindow>

// As long as it lives, prepares the window in which Qt shows the picture of a drag, before it comes up: it is announced
// as what it is, so that a compositor draws no shadow for it, and where nothing blends it has the outline of its
// picture.
class DragWindowSetup : public QObject {
public:
    // `picture` is what Qt shows; with `blends` it may be translucent.
    DragWindowSetup(const QPixmap &picture, bool blends);

    bool eventFilter(QObject *object, QEvent *event) override;

private:
    QRegion outline; // empty for the whole window
};

// Whether `window` is one that Qt drags along below the pointer.
bool isDragWindow(const QWindow &window);
