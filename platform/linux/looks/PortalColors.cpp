// SPDX-License-Identifier: MIT
#include "platform/linux/looks/PortalColors.h"

#include <QApplication>
#include <QDBusArgument>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

namespace {

const QString kPortal = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kObject = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kSettings = QStringLiteral("org.freedesktop.portal.Settings");
const QString kAppearance = QStringLiteral("org.freedesktop.appearance");

} // namespace

PortalColors::PortalColors(const QDBusConnection &sessionBus)
    : bus(sessionBus)
{
    if (!bus.isConnected() || themeKnowsColors())
        return;
    bus.connect(kPortal, kObject, kSettings, QStringLiteral("SettingChanged"), this,
                SLOT(settingChanged(QDBusMessage)));
    read();
}

bool PortalColors::themeKnowsColors()
{
    return !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORMTHEME") ||
           qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(QLatin1Char(':')).contains(QStringLiteral("KDE"));
}

void PortalColors::read()
{
    auto message = QDBusMessage::createMethodCall(kPortal, kObject, kSettings, QStringLiteral("ReadAll"));
    message.setArguments({QStringList(kAppearance)});
    auto *call = new QDBusPendingCallWatcher(bus.asyncCall(message), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
        call->deleteLater();
        const QDBusMessage reply = call->reply();
        if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != QStringLiteral("a{sa{sv}}"))
            return;
        update(qdbus_cast<QMap<QString, QVariantMap>>(reply.arguments().constFirst()).value(kAppearance));
    });
}

void PortalColors::settingChanged(const QDBusMessage &message)
{
    const QVariantList told = message.arguments();
    if (message.signature() == QStringLiteral("ssv") && told[0].toString() == kAppearance)
        update({{told[1].toString(), told[2].value<QDBusVariant>().variant()}});
}

void PortalColors::update(const QVariantMap &changed)
{
    const DesktopColors before = colors;
    colors.update(changed);
    if (colors == before)
        return;
    // First restore the palette of style and theme.
    QApplication::setPalette(QPalette());
    QApplication::setPalette(desktopPalette(QApplication::palette(), colors));
}
