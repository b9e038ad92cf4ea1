// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/looks/DesktopColors.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

// Makes the application's palette dark where the desktop's settings portal says that the desktop is, and gives it the
// accent colour, now and whenever they change. Qt's own themes know this from Qt 6.5 on, and some of it only later.
// Nothing changes where there is no portal, or where a theme speaks for the desktop: that of KDE, or one the user has
// chosen.
class PortalColors : public QObject {
    Q_OBJECT

public:
    // `sessionBus` is where the portal is.
    explicit PortalColors(const QDBusConnection &sessionBus);

    // Whether a theme speaks for the desktop.
    static bool themeKnowsColors();

private slots:
    // The message itself, because Qt may not know the type of its value yet, and then connects nothing.
    void settingChanged(const QDBusMessage &message);

private:
    void read();
    void update(const QVariantMap &changed);

    QDBusConnection bus;
    DesktopColors colors;
};
