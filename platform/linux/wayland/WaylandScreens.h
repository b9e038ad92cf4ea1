// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Screens.h"
#include "platform/linux/wayland/WorkAreas.h"

#include <QObject>
#include <QTimer>

#include <memory>

// The outputs of a compositor. The pointer's position is known only while it is over a surface of this program.
class WaylandScreens : public Screens {
public:
    explicit WaylandScreens(std::shared_ptr<WorkAreas> workAreas);
    ~WaylandScreens() override;

    std::optional<Screen> main() const override;
    QList<Screen> all() const override;
    std::optional<QPointF> pointer() const override { return lastPointer; }

    // Stores the last known position of the pointer.
    void pointerSeen(const QPointF &position) { lastPointer = position; }

private:
    void follow(QScreen *screen);
    void report();

    QObject context; // the context of the connections to Qt's screens
    std::shared_ptr<WorkAreas> areas;
    QTimer reportSoon; // one report for all changes of one turn of the main loop
    QPointF lastPointer;
    QList<Screen> reported;
};
