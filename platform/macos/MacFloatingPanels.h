// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FloatingPanels.h"

#include <memory>
#include <vector>

class MacPanel;

// Nonactivating panels (they take clicks without activating the application) with the system's translucent material.
class MacFloatingPanels : public FloatingPanels {
public:
    MacFloatingPanels();
    ~MacFloatingPanels() override;

    void make(QWidget &window, const PanelStyle &style) override;
    void orderFront(QWidget &window) override;
    void orderOut(QWidget &window) override;
    bool canBlend() const override { return true; }
    bool drawsBackground() const override { return true; }

private:
    // Null for a window that is no panel.
    MacPanel *panelOf(const QWidget &window) const;

    std::vector<std::unique_ptr<MacPanel>> panels;
};
