// SPDX-License-Identifier: MIT
//
// Whatever a list of addresses holds, each file that it names has one spelling and can be a path.
#include "platform/FileURLs.h"

#include <climits>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *bytes, size_t size)
{
    const QList<QUrl> urls = fileURLs(QByteArray(reinterpret_cast<const char *>(bytes), qsizetype(size)));
    for (const QUrl &url : urls) {
        const QByteArray path = fileSystemPath(url);
        if (!url.isLocalFile() || !path.startsWith('/') || path.size() >= PATH_MAX || path.contains('\0') ||
            fileURL(path) != url || fileURLs(url.toEncoded()) != QList<QUrl>{url})
            std::abort();
        lastPathComponent(url);
    }
    return 0;
}
