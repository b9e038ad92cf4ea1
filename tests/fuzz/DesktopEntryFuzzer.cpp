// SPDX-License-Identifier: MIT
//
// Whatever a desktop entry holds, it can be read and looked for.
#include "platform/linux/desktop/DesktopEntries.h"

#include <QFile>
#include <QTemporaryDir>

#include <cstdlib>

using namespace Qt::StringLiterals;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *bytes, size_t size)
{
    static const QTemporaryDir folder(u"/dev/shm/parklet-XXXXXX"_s);
    const QString path = folder.filePath(u"a.desktop"_s);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(reinterpret_cast<const char *>(bytes), qint64(size)) < 0)
        std::abort();
    file.close();
    readDesktopEntry(QFile::encodeName(path));
    const DesktopEntries entries({folder.path()});
    if (!entries.path(u"a"_s) && entries.identifierNamed(u"a"_s))
        std::abort();
    entries.identifierForWindowClass(u"A"_s);
    return 0;
}
