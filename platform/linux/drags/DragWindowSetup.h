// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPixmap>
#include <QRegion>
#include <QWindow>

// While it exists, it prepares the window in which Qt shows the picture of a drag, before the window shows. It sets the
// window's type, so that a compositor draws no shadow. Without a compositor it gives the window the outline of the
// picture.
class DragWindowSetup : public QObject {
public:
    // `picture` is what Qt shows. It may be translucent if `blends`.
    DragWindowSetup(const QPixmap &picture, bool blends);

    bool eventFilter(QObject *object, QEvent *event) override;

private:
    QRegion outline; // empty for the whole window
};

// Whether `window` is the one in which Qt shows the picture of a drag below the pointer.
bool isDragWindow(const QWindow &window);
