// SPDX-License-Identifier: MIT
//
// Whatever a link holds, it leads to one file at most.
#include "platform/FileURLs.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *bytes, size_t size)
{
    const QList<QUrl> urls = linkedFileURLs(QByteArray(reinterpret_cast<const char *>(bytes), qsizetype(size)));
    if (urls.size() > 1 || (!urls.isEmpty() && !urls.first().isLocalFile()))
        std::abort();
    return 0;
}
