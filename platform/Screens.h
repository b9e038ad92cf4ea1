// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QPointF>
#include <QRectF>

#include <functional>
#include <optional>

// One screen, in the points of Qt's window coordinates: y grows downwards.
struct Screen {
    QRectF frame;
    QRectF visibleFrame; // without the space that panels and docks reserve
    double scale = 1.0;  // pixels per point

    bool operator==(const Screen &) const = default;
};

class Screens {
public:
    virtual ~Screens() = default;

    // The screen with the active window, or else with the pointer. Nothing while there is no screen.
    virtual std::optional<Screen> main() const = 0;

    // All screens, the primary one first.
    virtual QList<Screen> all() const = 0;

    // The pointer's position, in the same coordinates; nothing while the desktop does not tell it.
    virtual std::optional<QPointF> pointer() const = 0;

    // The height for flipped(), which converts from the top left of the primary screen to its bottom left.
    double flipHeight() const
    {
        const QList<Screen> screens = all();
        return screens.isEmpty() ? 0 : screens.constFirst().frame.bottom();
    }

    // Called on the main thread after screens were added or removed, or changed their size or reserved space.
    std::function<void()> onChange;
};
