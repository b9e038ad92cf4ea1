// SPDX-License-Identifier: MIT
#include "platform/SessionInstance.h"

#include "platform/linux/desktop/BusSessionInstance.h"
#include "platform/linux/desktop/SocketSessionInstance.h"

#include <QRegularExpression>

namespace {

// A user may have several displays with a session on each.
QString sessionName()
{
    QString display = qEnvironmentVariable("DISPLAY");
    display.remove(QRegularExpression(QStringLiteral("\\.\\d+$")));
    display.replace(QRegularExpression(QStringLiteral("[^A-Za-z0-9]")), QStringLiteral("_"));
    return QStringLiteral("parklet") + display;
}

} // namespace

std::unique_ptr<SessionInstance> createSessionInstance()
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (bus.isConnected())
        return std::make_unique<BusSessionInstance>(bus);
    return std::make_unique<SocketSessionInstance>(SocketSessionInstance::privateFolder(), sessionName());
}
