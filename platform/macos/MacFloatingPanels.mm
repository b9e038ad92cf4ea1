// SPDX-License-Identifier: MIT
#include "platform/macos/MacFloatingPanels.h"

#include "platform/macos/MacPanel.h"

#include <algorithm>

MacFloatingPanels::MacFloatingPanels() = default;

MacFloatingPanels::~MacFloatingPanels() = default;

void MacFloatingPanels::make(QWidget &window, const PanelStyle &style)
{
    std::erase_if(panels, [](const auto &panel) { return !panel->widget(); });
    panels.push_back(std::make_unique<MacPanel>(window, style));
}

void MacFloatingPanels::orderFront(QWidget &window)
{
    if (MacPanel *panel = panelOf(window))
        panel->orderFront();
}

void MacFloatingPanels::orderOut(QWidget &window)
{
    if (MacPanel *panel = panelOf(window))
        panel->orderOut();
}

MacPanel *MacFloatingPanels::panelOf(const QWidget &window) const
{
    const auto panel =
        std::find_if(panels.begin(), panels.end(), [&](const auto &each) { return each->widget() == &window; });
    return panel != panels.end() ? panel->get() : nullptr;
}
