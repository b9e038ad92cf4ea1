// SPDX-License-Identifier: MIT
#pragma once

#include "platform/EventMonitors.h"
#include "platform/Screens.h"

#include <map>
#include <memory>
#include <vector>

class EdgeStrip;
class ForeignDragWatcher;

// Tells of the mouse as far as drags in other programs go: that it moved during one, and that one is over. Where the
// server does not know the pointer, in the drags of native Wayland programs, strips at the screen's edge notice it.
class XcbEventMonitors : public EventMonitors {
public:
    // `screens` is asked where the screens' edges are.
    explicit XcbEventMonitors(std::shared_ptr<ForeignDragWatcher> watcher, std::function<QList<Screen>()> screens = {});
    ~XcbEventMonitors() override;

    std::optional<Token> add(quint32 mask, std::function<void()> handler) override;
    std::optional<Token> addNear(const QRectF &frame, std::function<void()> handler) override;
    void remove(Token token) override;

private:
    struct Monitor;

    std::vector<std::unique_ptr<EdgeStrip>> stripsBeside(const QRectF &frame);
    void send(EventMask event);

    std::shared_ptr<ForeignDragWatcher> watcher;
    std::function<QList<Screen>()> screens;
    std::map<Token, std::shared_ptr<const Monitor>> monitors;
    Token lastToken = 0;
};
