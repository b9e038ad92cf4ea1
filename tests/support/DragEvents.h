// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QWidget>

// Sends drag events to one widget, as a destination receives them. Each function returns whether the event was
// accepted, and writes the accepted action to `action` if given.

inline bool sendDragEnter(QWidget &target, const QMimeData &data, Qt::DropAction *action = nullptr,
                          Qt::DropActions possible = Qt::CopyAction | Qt::MoveAction)
{
    QDragEnterEvent event(target.rect().center(), possible, &data, Qt::LeftButton, Qt::NoModifier);
    event.setDropAction(Qt::MoveAction);
    event.ignore();
    QApplication::sendEvent(&target, &event);
    if (action)
        *action = event.dropAction();
    return event.isAccepted();
}

inline bool sendDragMove(QWidget &target, const QMimeData &data, Qt::DropAction *action = nullptr,
                         Qt::DropActions possible = Qt::CopyAction | Qt::MoveAction)
{
    QDragMoveEvent event(target.rect().center(), possible, &data, Qt::LeftButton, Qt::NoModifier);
    event.setDropAction(Qt::MoveAction);
    event.ignore();
    QApplication::sendEvent(&target, &event);
    if (action)
        *action = event.dropAction();
    return event.isAccepted();
}

inline void sendDragLeave(QWidget &target)
{
    QDragLeaveEvent event;
    QApplication::sendEvent(&target, &event);
}

inline bool sendDrop(QWidget &target, const QMimeData &data, Qt::DropAction *action = nullptr,
                     Qt::DropActions possible = Qt::CopyAction | Qt::MoveAction)
{
    QDropEvent event(target.rect().center(), possible, &data, Qt::LeftButton, Qt::NoModifier);
    event.setDropAction(Qt::MoveAction);
    event.ignore();
    QApplication::sendEvent(&target, &event);
    if (action)
        *action = event.dropAction();
    return event.isAccepted();
}
