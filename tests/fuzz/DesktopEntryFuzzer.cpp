// SPDX-License-Identifier: MIT
//
// Whatever a desktop entry holds, it can be read and looked for.
#include "platform/linux/desktop/DesktopEntries.h"

#include <QFile>
#include <QTemporaryDir>

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *bytes, size_t size)
{
    static const QTemporaryDir folder(QStringLiteral("/dev/shm/parklet-XXXXXX"));
    const QString path = folder.filePath(QStringLiteral("a.desktop"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(reinterpret_cast<const char *>(bytes), qint64(size)) < 0)
        std::abort();
    file.close();
    readDesktopEntry(QFile::encodeName(path));
    const DesktopEntries entries({folder.path()});
    if (!entries.path(QStringLiteral("a")) && entries.identifierNamed(QStringLiteral("a")))
        std::abort();
    entries.identifierForWindowClass(QStringLiteral("A"));
    return 0;
}
