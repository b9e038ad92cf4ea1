// SPDX-License-Identifier: MIT
#include "drag/DragMonitor.h"

#include "platform/DragPasteboard.h"
#include "platform/MainQueue.h"
#include "platform/WhileAlive.h"

DragMonitor::DragMonitor(EventMonitors &monitors, DragPasteboard &pasteboard, MainQueue &queue)
    : eventMonitors(monitors)
    , dragPasteboard(pasteboard)
    , mainQueue(queue)
{
}

void DragMonitor::start()
{
    globalDragMonitor = eventMonitors.add(LeftMouseDragged, whileAlive(this, [this] { checkForDrag(); }));
    globalUpMonitor = eventMonitors.add(LeftMouseUp, whileAlive(this, [this] { mouseWentUp(); }));
}

void DragMonitor::checkForDrag()
{
    if (isDragging || dragPasteboard.changeCount() == lastSeenChangeCount)
        return;
    const QList<QUrl> urls = dragPasteboard.fileURLs();
    // Do not record a drag without files: it may offer files later.
    if (urls.isEmpty())
        return;
    lastSeenChangeCount = dragPasteboard.changeCount();
    isDragging = true;
    mainQueue.async(this, [this, urls] {
        if (delegate)
            delegate->dragMonitorDidStartDrag(urls);
    });
}

void DragMonitor::mouseWentUp()
{
    if (!isDragging)
        return;
    isDragging = false;
    mainQueue.async(this, [this] {
        if (delegate)
            delegate->dragMonitorDidEndDrag();
    });
}
