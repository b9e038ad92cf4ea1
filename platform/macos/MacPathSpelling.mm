// SPDX-License-Identifier: MIT
#include "platform/PathSpelling.h"
#include "platform/common/ComposedSpelling.h"

// The file system takes a composed letter and its parts for the same, and so a file has two names. Qt composes what is
// copied or dropped; a folder lists names as they were given.
QByteArray canonicalSpelling(const QByteArray &path)
{
    return composedSpelling(path);
}
