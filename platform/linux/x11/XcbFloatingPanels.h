// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FloatingPanels.h"
#include "platform/linux/x11/XcbConnection.h"
#include "platform/linux/x11/XcbPanel.h"

#include <QTimer>

#include <functional>
#include <memory>
#include <vector>

// Floating panels on an X server: managed windows above all others. They are override-redirect while the active window
// is full screen, and when they show during a drag.
class XcbFloatingPanels : public FloatingPanels {
public:
    // With a null connection Qt does everything.
    explicit XcbFloatingPanels(std::shared_ptr<XcbConnection> connection);

    void make(QWidget &window, const PanelStyle &style) override;
    void orderFront(QWidget &window) override;
    void orderOut(QWidget &window) override;
    void setAlpha(QWidget &window, double alpha) override;
    bool canBlend() const override { return blends; }

    // Asked whether a drag is going on of whose button the server knows nothing, if set.
    std::function<bool()> onDragInProgress;

private:
    XcbPanel *panelOf(const QWidget &window) const;
    bool anyVisible() const;
    bool isActiveWindowFullScreen() const;
    bool isButtonPressed() const;
    void handle(const xcb_generic_event_t &event);
    void setBlends(bool canBlend);
    void reorder();

    std::shared_ptr<XcbConnection> xcb;
    XcbConnection::Subscription subscription;
    std::vector<std::unique_ptr<XcbPanel>> panels;
    bool blends = true;
    QTimer reorderSoon; // debounces: window managers report one change of the stack in several steps
};
