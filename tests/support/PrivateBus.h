// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QString>

// A session bus for this test alone, which ends with it. It starts no services.
class PrivateBus {
public:
    PrivateBus();
    ~PrivateBus();
    Q_DISABLE_COPY_MOVE(PrivateBus)

    // Empty when the bus could not be started.
    QString address;

    // A connection of its own.
    QDBusConnection connect(const QString &name) const;

private:
    QProcess daemon;
};
