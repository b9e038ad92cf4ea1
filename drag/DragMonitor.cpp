// SPDX-License-Identifier: MIT
#include "drag/DragMonitor.h"

#include "platform/DragPasteboard.h"
#include "platform/MainQueue.h"

DragMonitor::DragMonitor(EventMonitors &monitors, DragPasteboard &pasteboard, MainQueue &queue)
    : eventMonitors(monitors)
    , dragPasteboard(pasteboard)
    , mainQueue(queue)
{
}

void DragMonitor::start()
{
    const QPointer<DragMonitor> monitor(this);
    globalDragMonitor = eventMonitors.add(LeftMouseDragged, [monitor] {
        if (monitor)
            monitor->checkForDrag();
    });
    globalUpMonitor = eventMonitors.add(LeftMouseUp, [monitor] {
        if (monitor)
            monitor->mouseWentUp();
    });
}

void DragMonitor::checkForDrag()
{
    if (isDragging || dragPasteboard.changeCount() == lastSeenChangeCount)
        return;
    const QList<QUrl> urls = dragPasteboard.fileURLs();
    // A drag without files is not recorded, so that what it may still come to carry is seen.
    if (urls.isEmpty())
        return;
    lastSeenChangeCount = dragPasteboard.changeCount();
    isDragging = true;
    mainQueue.async([monitor = QPointer<DragMonitor>(this), urls] {
        if (monitor && monitor->delegate)
            monitor->delegate->dragMonitorDidStartDrag(urls);
    });
}

void DragMonitor::mouseWentUp()
{
    if (!isDragging)
        return;
    isDragging = false;
    mainQueue.async([monitor = QPointer<DragMonitor>(this)] {
        if (monitor && monitor->delegate)
            monitor->delegate->dragMonitorDidEndDrag();
    });
}
