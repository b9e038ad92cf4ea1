// SPDX-License-Identifier: MIT
#pragma once

#include "platform/EventMonitors.h"
#include "platform/Screens.h"
#include "platform/common/MonitorList.h"

#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

class EdgeStrip;
class ForeignDragWatcher;

// Reports the mouse during drags in other programs: it moved, or the drag is over. During a drag of a native Wayland
// program the X server does not know the pointer; then strips at the edge of the screen notice it.
class XcbEventMonitors : public EventMonitors {
public:
    // `screens` returns the screens, for the places of the strips.
    explicit XcbEventMonitors(std::shared_ptr<ForeignDragWatcher> watcher, std::function<QList<Screen>()> screens = {});
    ~XcbEventMonitors() override;

    std::optional<Token> add(quint32 mask, std::function<void()> handler) override;
    std::optional<Token> addNear(const QRectF &frame, std::function<void()> handler) override;
    void remove(Token token) override;

    // Whether a drop onto a window of ours may still arrive. While it may, the end of the drag is not told.
    std::function<bool()> onExpectsDrop;
    void dropArrived();
    // How long that may be.
    std::chrono::milliseconds dropPatience{5000};

private:
    using EdgeStrips = std::vector<std::unique_ptr<EdgeStrip>>;

    EdgeStrips stripsBeside(const QRectF &frame);
    void ended();
    void tellEnd();

    std::shared_ptr<ForeignDragWatcher> watcher;
    std::function<QList<Screen>()> screens;
    MonitorList monitors;
    QTimer patience; // runs from the release until the drop has arrived
};
