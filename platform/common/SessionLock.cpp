// SPDX-License-Identifier: MIT
#include "platform/common/SessionLock.h"

SessionLock::SessionLock(const QString &path)
    : file(path)
{
    // The lock never becomes stale by its age.
    file.setStaleLockTime(0);
}

bool SessionLock::take()
{
    if (file.tryLock(0))
        return true;
    // A lock file without a process number, as a full disk leaves it, would block every start.
    qint64 process = 0;
    QString host;
    QString application;
    if (file.error() == QLockFile::LockFailedError && !file.getLockInfo(&process, &host, &application)) {
        file.removeStaleLockFile();
        if (file.tryLock(0))
            return true;
    }
    // If locking is impossible, there is no other instance to notify, and a second shelf is better than none.
    return file.error() != QLockFile::LockFailedError;
}
