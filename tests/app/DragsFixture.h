// SPDX-License-Identifier: MIT
#pragma once

#include "tests/app/AppFixture.h"
#include "tests/support/DragEvents.h"

#include <QTest>

using namespace Qt::StringLiterals;

constexpr int kAtOnce = int(AutoShowTrigger::AtOnce);
constexpr int kNearCursor = int(AutoShowTrigger::NearCursor);
constexpr int kWhenNear = int(AutoShowTrigger::WhenNear);

inline const QString kEditor = u"org.example.Editor"_s;

// The delegate, launched with a trigger, and a user who drags in another program.
struct DragsFixture : AppFixture {
    explicit DragsFixture(int trigger, const QMap<QString, QVariant> &settings = {})
    {
        values.insert(Settings::autoShowTrigger.key, trigger);
        values.insert(settings);
        launch();
    }

    // The user begins to drag a file in another program.
    void startDrag()
    {
        ++virtualPlatform.dragPasteboard.count;
        virtualPlatform.dragPasteboard.urls = {file("/dragged.txt")};
        monitors.send(LeftMouseDragged);
        queue.runPending();
    }
    // Moves the pointer (origin at the top left), and lets the program react.
    void dragTo(const QPointF &pointer)
    {
        moveTo(pointer);
        queue.runPending();
    }
    void moveTo(const QPointF &pointer)
    {
        virtualPlatform.screens.pointerPosition = pointer;
        monitors.send(LeftMouseDragged);
    }
    void release()
    {
        monitors.send(LeftMouseUp);
        queue.runPending();
    }
    void drop(QWidget &target, const QList<QUrl> &urls)
    {
        QMimeData data;
        data.setUrls(urls);
        QVERIFY(sendDragEnter(target, data));
        QVERIFY(sendDrop(target, data));
    }
    void showShelf()
    {
        delegate->toggleShelf();
        queue.advance(1);
    }
    // The number of monitors besides the one that has noticed the drag.
    qsizetype proximityMonitors() const { return monitors.count(LeftMouseDragged) - 1; }

    VirtualEventMonitors &monitors = virtualPlatform.eventMonitors;
};

inline const QPointF kFarAway(100, 700);
// The default shelf is at x 1160 to 1276 and y 318 to 482.
inline const QPointF kNearby(1100, 400);
