// SPDX-License-Identifier: MIT
#pragma once

#include "shelf/DropTarget.h"
#include "shelf/Fader.h"

#include <QIcon>
#include <QWidget>

class VisualEffectView;
struct Platform;

// The drop target that fills the cursor shelf: a rounded background with the tray symbol in its middle.
class CursorDropZone : public QWidget, public DropTarget {
    Q_OBJECT

public:
    CursorDropZone(Platform &platform, QWidget *parent);

    VisualEffectView *visualFX;
    QWidget *iconView;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override { draggingEntered(event); }
    void dragMoveEvent(QDragMoveEvent *event) override { draggingUpdated(event); }
    void dragLeaveEvent(QDragLeaveEvent *event) override { draggingExited(event); }
    void dropEvent(QDropEvent *event) override { performDragOperation(event); }
};

// The small drop zone that shows beside the pointer when a drag begins. It passes its files on and holds none.
class CursorShelf : public QWidget {
    Q_OBJECT

public:
    explicit CursorShelf(Platform &platform);

    // Receives the files dropped on the zone.
    std::function<void(const QList<QUrl> &urls)> onDrop;

    CursorDropZone *dropZone;

    // Places the panel beside the pointer and fades it in over 0.15 s, even if it is already visible. Does nothing
    // while the position of the pointer is unknown.
    void showNearCursor();

    // Fades the panel out over 0.12 s, if it is visible.
    void hide();

    double alpha() const { return fader.alpha(); }

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    Platform &platform;
    Fader fader;
    bool hiding = false; // a fade-out is in progress
};
