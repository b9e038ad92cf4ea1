// SPDX-License-Identifier: MIT
#pragma once

#include <QLockFile>

// A file that the first program of a session locks while it runs.
class SessionLock {
public:
    explicit SessionLock(const QString &path);

    // Whether this program may run: it has the lock, or locking is impossible there.
    bool take();

private:
    QLockFile file;
};
