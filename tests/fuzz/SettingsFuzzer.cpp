// SPDX-License-Identifier: MIT
//
// Whatever the settings file holds, it can be read, and what is set in it is there afterwards.
#include "platform/linux/files/JsonUserDefaults.h"

#include <QFile>
#include <QTemporaryDir>

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *bytes, size_t size)
{
    // Not on a disk, which would be waited for.
    static const QTemporaryDir folder(QStringLiteral("/dev/shm/parklet-XXXXXX"));
    const QString path = folder.filePath(QStringLiteral("settings.json"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(reinterpret_cast<const char *>(bytes), qint64(size)) < 0)
        std::abort();
    file.close();
    JsonUserDefaults defaults(path);
    for (const char *key : {"a", "windowEdge", "excludedBundleIDs", "tintColorData"}) {
        const QString name = QString::fromLatin1(key);
        defaults.object(name);
        defaults.integer(name);
        defaults.data(name);
        defaults.stringArray(name);
    }
    const QString key = QStringLiteral("windowEdge");
    if (!defaults.set(key, 2.0) || JsonUserDefaults(path).number(key) != 2.0)
        std::abort();
    return 0;
}
