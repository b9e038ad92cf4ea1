// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FloatingPanels.h"
#include "platform/linux/wayland/LayerPanel.h"

#include <memory>
#include <vector>

class WorkAreas;

// Floating panels that are layer surfaces of a Wayland compositor.
class WaylandFloatingPanels : public FloatingPanels {
public:
    WaylandFloatingPanels(std::unique_ptr<LayerShell> layerShell, std::shared_ptr<WorkAreas> workAreas);
    ~WaylandFloatingPanels() override;

    void make(QWidget &window, const PanelStyle &style) override;
    void orderFront(QWidget &window) override;
    void orderOut(QWidget &window) override;
    void setAlpha(QWidget &window, double alpha) override;
    bool canBlend() const override { return true; }

    std::function<void(LayerPanel &panel, PanelEvent event, const QPointF &position)> onEvent;
    std::function<bool(QKeyEvent &event)> onKey;
    // A panel has been shown.
    std::function<void()> onOrderedFront;

private:
    LayerPanel *panelOf(const QWidget &window) const;

    std::unique_ptr<LayerShell> shell;
    std::shared_ptr<WorkAreas> areas;
    std::vector<std::unique_ptr<LayerPanel>> panels;
};
