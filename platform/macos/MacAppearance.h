// SPDX-License-Identifier: MIT
#pragma once

#include "platform/SystemAppearance.h"

// The system's accent colour, its own symbols and the size of its scrollers.
class MacAppearance : public SystemAppearance {
public:
    QColor accentColor() const override;
    QIcon symbol(const QString &name, const QColor &tint) const override;
    QIcon applicationIcon() const override;
    bool colorPanelTakesBack() const override { return false; }
    double legacyScrollerWidth() const override;
};
