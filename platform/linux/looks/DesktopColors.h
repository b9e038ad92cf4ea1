// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QPalette>
#include <QVariantMap>

// What a desktop says of its colours through its settings portal: the namespace org.freedesktop.appearance.
struct DesktopColors {
    enum class Scheme { NoPreference, Dark, Light };

    Scheme scheme = Scheme::NoPreference;
    QColor accent; // invalid where the desktop has none

    bool operator==(const DesktopColors &) const = default;

    // Takes over the settings of `changed`: "color-scheme", a number, and "accent-color", red, green and blue from 0 to
    // 1. Any other number is no preference, and a colour of other parts none.
    void update(const QVariantMap &changed);
};

// The roles of a palette that have to differ from `standard`, that of style and theme, to show `colors`. Those that a
// dark desktop has dark already are left as they are.
QPalette desktopPalette(const QPalette &standard, const DesktopColors &colors);
