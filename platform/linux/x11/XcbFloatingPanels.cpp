// SPDX-License-Identifier: MIT
#include "platform/linux/x11/XcbFloatingPanels.h"

#include <xcb/xfixes.h>

#include <algorithm>
#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace {

// How long a change of the stack waits before it checks again whether a drag has ended.
constexpr auto kButtonInterval = 100ms;

// By then the program has started, and the user has hardly begun a drag.
constexpr auto kPreparation = 1s;

} // namespace

XcbFloatingPanels::XcbFloatingPanels(std::shared_ptr<XcbConnection> connection)
    : xcb(std::move(connection))
{
    if (!xcb)
        return;
    reorderSoon.setSingleShot(true);
    QObject::connect(&reorderSoon, &QTimer::timeout, &reorderSoon, [this] { reorder(); });
    subscription = xcb->listen([this](const xcb_generic_event_t &event) { handle(event); });
    xcb->addRootEvents(XCB_EVENT_MASK_PROPERTY_CHANGE);

    if (xcb->xfixesFirstEvent())
        xcb_xfixes_select_selection_input(xcb->get(), xcb->root(), xcb->compositorSelection(),
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    blends = xcb->hasCompositor();
}

void XcbFloatingPanels::make(QWidget &window, const PanelStyle &style)
{
    std::erase_if(panels, [](const auto &panel) { return !panel->widget(); });
    panels.push_back(std::make_unique<XcbPanel>(window, style, xcb));
    panels.back()->setBlends(blends);
    QTimer::singleShot(kPreparation, panels.back().get(), [panel = panels.back().get()] { panel->prepare(); });
}

void XcbFloatingPanels::orderFront(QWidget &window)
{
    if (XcbPanel *panel = panelOf(window))
        panel->orderFront({.isFullScreen = isActiveWindowFullScreen(), .isDragInProgress = isButtonPressed()});
}

void XcbFloatingPanels::orderOut(QWidget &window)
{
    if (XcbPanel *panel = panelOf(window))
        panel->orderOut();
}

void XcbFloatingPanels::setAlpha(QWidget &window, double alpha)
{
    if (XcbPanel *panel = panelOf(window))
        panel->setAlpha(alpha);
}

XcbPanel *XcbFloatingPanels::panelOf(const QWidget &window) const
{
    const auto panel =
        std::find_if(panels.begin(), panels.end(), [&](const auto &each) { return each->widget() == &window; });
    return panel == panels.end() ? nullptr : panel->get();
}

bool XcbFloatingPanels::anyVisible() const
{
    return std::any_of(panels.begin(), panels.end(),
                       [](const auto &panel) { return panel->widget() && panel->widget()->isVisible(); });
}

bool XcbFloatingPanels::isActiveWindowFullScreen() const
{
    if (!xcb)
        return false;
    const std::vector<quint32> active = xcb->values(xcb->root(), xcb->atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW);
    if (active.empty() || active.front() == XCB_NONE)
        return false;
    const std::vector<quint32> state = xcb->values(active.front(), xcb->atom("_NET_WM_STATE"), XCB_ATOM_ATOM);
    return std::find(state.begin(), state.end(), xcb->atom("_NET_WM_STATE_FULLSCREEN")) != state.end();
}

bool XcbFloatingPanels::isButtonPressed() const
{
    if (onDragInProgress && onDragInProgress())
        return true;
    if (!xcb)
        return false;
    constexpr quint16 kButtons = XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3;
    const auto pointer = xcb->reply(xcb_query_pointer_reply, xcb_query_pointer(xcb->get(), xcb->root()));
    return pointer && (pointer->mask & kButtons) != 0;
}

void XcbFloatingPanels::handle(const xcb_generic_event_t &event)
{
    const int type = eventType(event);
    if (type == XCB_PROPERTY_NOTIFY) {
        const auto &change = reinterpret_cast<const xcb_property_notify_event_t &>(event);
        // A window that becomes full screen changes the stacking order or the active window.
        const bool reorders = change.window == xcb->root() && (change.atom == xcb->atom("_NET_ACTIVE_WINDOW") ||
                                                               change.atom == xcb->atom("_NET_CLIENT_LIST_STACKING"));
        if (reorders && anyVisible())
            reorderSoon.start(0);
    } else if (xcb->xfixesFirstEvent() && type == *xcb->xfixesFirstEvent() + XCB_XFIXES_SELECTION_NOTIFY) {
        const auto &change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t &>(event);
        if (change.selection == xcb->compositorSelection())
            setBlends(change.subtype == XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER && change.owner != XCB_NONE);
    }
}

void XcbFloatingPanels::setBlends(bool canBlend)
{
    blends = canBlend;
    for (const auto &panel : panels)
        panel->setBlends(canBlend);
}

void XcbFloatingPanels::reorder()
{
    if (!anyVisible())
        return;
    // Not during a drag: its source would lose the panel under the pointer.
    if (isButtonPressed()) {
        reorderSoon.start(kButtonInterval);
        return;
    }
    const bool overrides = isActiveWindowFullScreen();
    for (const auto &panel : panels)
        panel->setOverridesManager(overrides);
}
