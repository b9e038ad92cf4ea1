// SPDX-License-Identifier: MIT
#include "platform/SessionInstance.h"

#include "platform/linux/desktop/BusSessionInstance.h"
#include "platform/linux/desktop/SocketSessionInstance.h"

#include <QRegularExpression>

#include <optional>

namespace {

// A user may have several displays with a session on each.
QString sessionName()
{
    QString display = qEnvironmentVariable("DISPLAY");
    display.remove(QRegularExpression(QStringLiteral("\\.\\d+$")));
    display.replace(QRegularExpression(QStringLiteral("[^A-Za-z0-9]")), QStringLiteral("_"));
    return QStringLiteral("parklet") + display;
}

// One Parklet per bus, and one per display as well: a session outlives its bus, and then has none or another one.
class BusAndSocketSessionInstance : public SessionInstance {
public:
    explicit BusAndSocketSessionInstance(const QDBusConnection &connection)
        : bus(connection)
    {
        bus.onActivate = [this] { activate(); };
        bus.onAction = [this](const QString &name) {
            if (onAction)
                onAction(name);
        };
    }

    bool claim() override
    {
        socket.emplace(SocketSessionInstance::privateFolder(), sessionName());
        socket->onActivate = [this] { activate(); };
        const bool isFirst = socket->claim();
        if (isFirst && bus.claim())
            return true;
        unanswered = isFirst ? bus.isUnanswered() : socket->isUnanswered();
        socket.reset();
        return false;
    }

private:
    void activate()
    {
        if (onActivate)
            onActivate();
    }

    BusSessionInstance bus;
    std::optional<SocketSessionInstance> socket;
};

} // namespace

std::unique_ptr<SessionInstance> createSessionInstance()
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (bus.isConnected())
        return std::make_unique<BusAndSocketSessionInstance>(bus);
    return std::make_unique<SocketSessionInstance>(SocketSessionInstance::privateFolder(), sessionName());
}
