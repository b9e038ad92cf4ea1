// SPDX-License-Identifier: MIT
#include "platform/PathSpelling.h"

// A name is its bytes; another spelling is another file.
QByteArray canonicalSpelling(const QByteArray &path)
{
    return path;
}
