// SPDX-License-Identifier: MIT
#pragma once

#include "platform/SessionInstance.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QObject>
#include <QVariantMap>

// One Parklet per session bus: the owner of its name. Other starts and the desktop's launchers call it as an
// org.freedesktop.Application.
class BusSessionInstance : public SessionInstance {
public:
    explicit BusSessionInstance(const QDBusConnection &sessionBus);
    ~BusSessionInstance() override;

    bool claim() override;

private:
    bool takeName();

    QDBusConnection bus;
    QObject application; // the object on the bus
};

// The interface org.freedesktop.Application, as the desktop entry specification describes it.
class ApplicationAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    ApplicationAdaptor(QObject *object, SessionInstance &sessionInstance);

public slots:
    void Activate(const QVariantMap &platformData);
    void Open(const QStringList &addresses, const QVariantMap &platformData);
    void ActivateAction(const QString &name, const QVariantList &parameters, const QVariantMap &platformData);

private:
    SessionInstance &instance;
};
