// SPDX-License-Identifier: MIT
#include "platform/linux/desktop/BusSessionInstance.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QElapsedTimer>

namespace {

const QString kName = QStringLiteral("com.orvane.Parklet");
const QString kPath = QStringLiteral("/com/orvane/Parklet");
const QString kInterface = QStringLiteral("org.freedesktop.Application");

// How long a later start waits for the running instance, which answers when its main loop runs.
constexpr int kAnswerTime = 2500; // milliseconds
// An owner may exit between the two calls.
constexpr int kAttempts = 3;

} // namespace

BusSessionInstance::BusSessionInstance(const QDBusConnection &sessionBus)
    : bus(sessionBus)
{
    new ApplicationAdaptor(&application, *this);
}

BusSessionInstance::~BusSessionInstance()
{
    bus.unregisterObject(kPath);
    bus.unregisterService(kName);
}

bool BusSessionInstance::claim()
{
    // Register the object before the name: messages may follow the name at once.
    bus.registerObject(kPath, &application);
    QElapsedTimer clock;
    clock.start();
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        if (takeName())
            return true;
        auto message = QDBusMessage::createMethodCall(kName, kPath, kInterface, QStringLiteral("Activate"));
        message.setArguments({QVariantMap()});
        // Do not let the bus start another instance: this process is to become it.
        message.setAutoStartService(false);
        const QDBusMessage answer = bus.call(message, QDBus::Block, kAnswerTime);
        unanswered = answer.type() != QDBusMessage::ReplyMessage;
        // One that ends meanwhile leaves its name.
        if (!unanswered || clock.hasExpired(kAnswerTime))
            break;
    }
    bus.unregisterObject(kPath);
    return false;
}

bool BusSessionInstance::takeName()
{
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply = bus.interface()->registerService(
        kName, QDBusConnectionInterface::DontQueueService, QDBusConnectionInterface::DontAllowReplacement);
    // No instance has answered. A second shelf is better than none.
    return !reply.isValid() || reply.value() == QDBusConnectionInterface::ServiceRegistered;
}

ApplicationAdaptor::ApplicationAdaptor(QObject *object, SessionInstance &sessionInstance)
    : QDBusAbstractAdaptor(object)
    , instance(sessionInstance)
{
}

void ApplicationAdaptor::Activate(const QVariantMap &)
{
    if (instance.onActivate)
        instance.onActivate();
}

void ApplicationAdaptor::Open(const QStringList &, const QVariantMap &platformData)
{
    Activate(platformData);
}

void ApplicationAdaptor::ActivateAction(const QString &name, const QVariantList &, const QVariantMap &)
{
    if (instance.onAction)
        instance.onAction(name);
}
