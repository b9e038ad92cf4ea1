// SPDX-License-Identifier: MIT
#pragma once

#include "platform/SystemAppearance.h"

// The system's accent colour and its own symbols.
class MacAppearance : public SystemAppearance {
public:
    QColor accentColor() const override;
    QIcon symbol(const QString &name, const QColor &tint) const override;
    QIcon applicationIcon() const override;
    bool colorPanelTakesBack() const override { return false; }
};
