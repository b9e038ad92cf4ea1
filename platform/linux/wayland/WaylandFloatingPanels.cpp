// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/WaylandFloatingPanels.h"

#include "platform/linux/wayland/WorkAreas.h"

#include <QScreen>

#include <algorithm>
#include <utility>

WaylandFloatingPanels::WaylandFloatingPanels(std::unique_ptr<LayerShell> layerShell,
                                             std::shared_ptr<WorkAreas> workAreas)
    : shell(std::move(layerShell))
    , areas(std::move(workAreas))
{
}

WaylandFloatingPanels::~WaylandFloatingPanels() = default;

void WaylandFloatingPanels::make(QWidget &window, const PanelStyle &style)
{
    std::erase_if(panels, [](const auto &panel) { return !panel->widget(); });
    window.setWindowRole(style.role);
    panels.push_back(std::make_unique<LayerPanel>(window, *shell, [this](const QScreen &screen) {
        const auto area = std::ranges::find_if(areas->all(), [&screen](const auto &each) {
            return each->output().frame.topLeft() == screen.geometry().topLeft();
        });
        return area == areas->all().end() ? screen.geometry().topLeft() : (*area)->frame().topLeft();
    }));
    LayerPanel &panel = *panels.back();
    panel.onEvent = [this, &panel](PanelEvent event, const QPointF &position) {
        if (onEvent)
            onEvent(panel, event, position);
    };
    panel.onKey = [this](QKeyEvent &event) { return onKey && onKey(event); };
}

void WaylandFloatingPanels::orderFront(QWidget &window)
{
    if (LayerPanel *panel = panelOf(window)) {
        panel->orderFront();
        if (onOrderedFront)
            onOrderedFront();
    }
}

void WaylandFloatingPanels::orderOut(QWidget &window)
{
    if (LayerPanel *panel = panelOf(window))
        panel->orderOut();
}

void WaylandFloatingPanels::setAlpha(QWidget &window, double alpha)
{
    if (LayerPanel *panel = panelOf(window))
        panel->setAlpha(alpha);
}

LayerPanel *WaylandFloatingPanels::panelOf(const QWidget &window) const
{
    const auto panel = std::ranges::find(panels, &window, [](const auto &each) { return each->widget(); });
    return panel == panels.end() ? nullptr : panel->get();
}
