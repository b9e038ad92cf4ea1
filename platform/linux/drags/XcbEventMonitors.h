// SPDX-License-Identifier: MIT
#pragma once

#include "platform/EventMonitors.h"

#include <map>
#include <memory>

class ForeignDragWatcher;

// Tells of the mouse as far as drags in other programs go: that it moved during one, and that one is over.
class XcbEventMonitors : public EventMonitors {
public:
    explicit XcbEventMonitors(std::shared_ptr<ForeignDragWatcher> watcher);
    ~XcbEventMonitors() override;

    std::optional<Token> add(quint32 mask, std::function<void()> handler) override;
    void remove(Token token) override;

private:
    struct Monitor {
        quint32 mask;
        std::function<void()> handler;
    };

    void send(EventMask event);

    std::shared_ptr<ForeignDragWatcher> watcher;
    std::map<Token, std::shared_ptr<const Monitor>> monitors;
    Token lastToken = 0;
};
