// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QString>

// A session bus that only this test knows, and that ends with it. It starts no services.
class PrivateBus {
public:
    PrivateBus();
    ~PrivateBus();
    Q_DISABLE_COPY_MOVE(PrivateBus)

    // Empty when the bus did not come up.
    QString address;

    // A connection of its own.
    QDBusConnection connect(const QString &name) const;

private:
    QProcess daemon;
};
