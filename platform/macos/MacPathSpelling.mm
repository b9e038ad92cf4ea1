// SPDX-License-Identifier: MIT
#include "platform/PathSpelling.h"
#include "platform/common/ComposedSpelling.h"

// For the file system, a composed letter and its parts are equal, so a file has two names. Qt composes the letters of
// copied and dropped names, and a folder lists the names as they were given.
QByteArray canonicalSpelling(const QByteArray &path)
{
    return composedSpelling(path);
}
