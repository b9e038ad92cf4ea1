// SPDX-License-Identifier: MIT
#pragma once

#include <QLockFile>

// A file that the first program of a session locks for as long as it runs.
class SessionLock {
public:
    explicit SessionLock(const QString &path);

    // Whether this program may run: it has the lock, or nothing can be locked there at all.
    bool take();

private:
    QLockFile file;
};
