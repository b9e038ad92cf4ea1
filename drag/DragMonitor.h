// SPDX-License-Identifier: MIT
#pragma once

#include "platform/EventMonitors.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QUrl>

class DragPasteboard;
class MainQueue;

// Hears of file drags in other applications, on the main queue, after the event that revealed them.
class DragMonitorDelegate : public QObject {
    Q_OBJECT

public:
    // A new file drag. `urls` are its files in their order, never empty.
    virtual void dragMonitorDidStartDrag(const QList<QUrl> &urls) = 0;

    // The left mouse button went up while a drag was being reported.
    virtual void dragMonitorDidEndDrag() = 0;
};

// Reports drags of files in any application: once when a drag starts and once when it ends.
class DragMonitor : public QObject {
    Q_OBJECT

public:
    DragMonitor(EventMonitors &eventMonitors, DragPasteboard &dragPasteboard, MainQueue &mainQueue);

    QPointer<DragMonitorDelegate> delegate;

    // Installs the monitors; call it once. They stay until the process ends. When the platform refuses one, its events
    // are not seen.
    void start();

private:
    void checkForDrag();
    void mouseWentUp();

    EventMonitors &eventMonitors;
    DragPasteboard &dragPasteboard;
    MainQueue &mainQueue;
    std::optional<EventMonitors::Token> globalDragMonitor;
    std::optional<EventMonitors::Token> globalUpMonitor;
    bool isDragging = false;         // a drag has been reported as started and not yet as ended
    qint64 lastSeenChangeCount = -1; // the pasteboard's at the last reported start
};
