// SPDX-License-Identifier: MIT
#pragma once

#include "platform/SessionInstance.h"

#include <QLocalServer>
#include <QString>

// One Parklet per folder, for sessions without a bus: the process that holds a lock, which the kernel releases when the
// process ends. Later starts reach it through a socket beside the lock.
class SocketSessionInstance : public SessionInstance {
public:
    // A folder that belongs to this user only. Empty when there is none.
    static QString privateFolder();

    // `name` distinguishes the sessions of one user.
    SocketSessionInstance(const QString &folder, const QString &name);
    ~SocketSessionInstance() override;

    bool claim() override;

private:
    void listen();
    bool askOther() const;

    QString path; // without suffix
    int lock = -1;
    QLocalServer server;
};
