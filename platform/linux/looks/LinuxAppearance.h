// SPDX-License-Identifier: MIT
#pragma once

#include "platform/SystemAppearance.h"

#include <memory>

class PortalColors;
class QDBusConnection;

// The palette's highlight is the accent colour, and the SVG files in `artwork` are the symbols. Without an icon in
// there the application has the icon theme's icon for its desktop entry, or for any application.
class LinuxAppearance : public SystemAppearance {
public:
    // `artwork` holds AppIcon.svg and symbols/<name>.svg, by default the program's own.
    explicit LinuxAppearance(const QString &artwork = QStringLiteral(":"));

    ~LinuxAppearance() override;

    // Makes the application follow the colours of the desktop's settings portal; see PortalColors.
    void followPortal(const QDBusConnection &sessionBus);

    QColor accentColor() const override;
    QIcon symbol(const QString &name, const QColor &tint) const override;
    QIcon applicationIcon() const override;
    // True for GTK's panel, which has the buttons Select and Cancel.
    bool colorPanelTakesBack() const override { return true; }

private:
    QString folder;
    std::unique_ptr<PortalColors> portal;
};
