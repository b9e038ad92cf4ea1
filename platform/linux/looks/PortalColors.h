// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/looks/DesktopColors.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

// Follows the desktop's settings portal: makes the application's palette dark when the desktop is, and sets the accent
// colour. Qt's own themes do so from Qt 6.5 on, and partly later. It changes nothing without a portal, or when a theme
// decides about colours: KDE's, or one that the user has chosen.
class PortalColors : public QObject {
    Q_OBJECT

public:
    // The portal is on `sessionBus`.
    explicit PortalColors(const QDBusConnection &sessionBus);

    // Whether a theme decides about colours.
    static bool themeKnowsColors();

private slots:
    // Takes the whole message: Qt connects nothing to a slot with a type that it does not know yet.
    void settingChanged(const QDBusMessage &message);

private:
    void read();
    void update(const QVariantMap &changed);

    QDBusConnection bus;
    DesktopColors colors;
};
