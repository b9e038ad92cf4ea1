// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Screens.h"

#include <memory>

// AppKit's screens. The main one is that of the window with the keyboard, in whatever application it is.
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
