// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QPalette>
#include <QVariantMap>

// The colours that a desktop states through its settings portal, in the namespace org.freedesktop.appearance.
struct DesktopColors {
    enum class Scheme { NoPreference, Dark, Light };

    Scheme scheme = Scheme::NoPreference;
    QColor accent; // invalid where the desktop has none

    bool operator==(const DesktopColors &) const = default;

    // Applies the settings in `changed`: "color-scheme", a number, and "accent-color", red, green and blue from 0 to 1.
    // Unknown numbers mean no preference, and components out of range mean no colour.
    void update(const QVariantMap &changed);
};

// The palette roles that must differ from `standard`, the palette of style and theme, to show `colors`. Roles that are
// already dark on a dark desktop stay.
QPalette desktopPalette(const QPalette &standard, const DesktopColors &colors);
