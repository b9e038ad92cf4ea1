// SPDX-License-Identifier: MIT
#pragma once

#include "platform/SystemAppearance.h"

// The palette's highlight as accent colour, and symbols drawn from the SVG files of `artwork`.
class LinuxAppearance : public SystemAppearance {
public:
    // `artwork` holds AppIcon.svg and symbols/<name>.svg, by default the program's own.
    explicit LinuxAppearance(const QString &artwork = QStringLiteral(":"));

    QColor accentColor() const override;
    QIcon symbol(const QString &name, const QColor &tint) const override;
    QIcon applicationIcon() const override;

private:
    QString folder;
};
