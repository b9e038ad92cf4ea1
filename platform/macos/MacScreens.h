// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Screens.h"

#include <memory>

// AppKit's screens. The main one has the window with the keyboard focus, of any application.
class MacScreens : public Screens {
public:
    MacScreens();
    ~MacScreens() override;

    std::optional<Screen> main() const override;
    QList<Screen> all() const override;
    std::optional<QPointF> pointer() const override;

private:
    struct Observer;

    void report();

    std::unique_ptr<Observer> observer;
    QList<Screen> reported;
};
