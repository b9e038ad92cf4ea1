// SPDX-License-Identifier: MIT
#include "platform/common/SessionLock.h"

SessionLock::SessionLock(const QString &path)
    : file(path)
{
    // However long the first one has been running.
    file.setStaleLockTime(0);
}

bool SessionLock::take()
{
    if (file.tryLock(0))
        return true;
    // A lock file that names no process, as a full disk leaves it, would be somebody's for ever.
    qint64 process = 0;
    QString host;
    QString application;
    if (file.error() == QLockFile::LockFailedError && !file.getLockInfo(&process, &host, &application)) {
        file.removeStaleLockFile();
        if (file.tryLock(0))
            return true;
    }
    // Where nothing can be locked there is nobody to hand over to: better a second shelf than none.
    return file.error() != QLockFile::LockFailedError;
}
