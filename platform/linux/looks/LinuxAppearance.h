// SPDX-License-Identifier: MIT
#pragma once

#include "platform/SystemAppearance.h"

#include <memory>

class PortalColors;
class QDBusConnection;

// The palette's highlight as accent colour, and symbols drawn from the SVG files of `artwork`. Without an icon there,
// the application's is the icon theme's for its desktop entry, or that of any application.
class LinuxAppearance : public SystemAppearance {
public:
    // `artwork` holds AppIcon.svg and symbols/<name>.svg, by default the program's own.
    explicit LinuxAppearance(const QString &artwork = QStringLiteral(":"));

    ~LinuxAppearance() override;

    // From now on the application has the colours that the desktop's settings portal tells; see PortalColors.
    void followPortal(const QDBusConnection &sessionBus);

    QColor accentColor() const override;
    QIcon symbol(const QString &name, const QColor &tint) const override;
    QIcon applicationIcon() const override;
    // As the one of GTK does, which asks to select or to cancel.
    bool colorPanelTakesBack() const override { return true; }

private:
    QString folder;
    std::unique_ptr<PortalColors> portal;
};
