// SPDX-License-Identifier: MIT
//
// Whatever the settings file holds, it can be read, and what is set in it is there afterwards.
#include "platform/linux/files/JsonUserDefaults.h"

#include <QFile>
#include <QTemporaryDir>

#include <cstdlib>

using namespace Qt::StringLiterals;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *bytes, size_t size)
{
    // In memory, because each write waits for a disk.
    static const QTemporaryDir folder(u"/dev/shm/parklet-XXXXXX"_s);
    const QString path = folder.filePath(u"settings.json"_s);
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
    const QString key = u"windowEdge"_s;
    if (!defaults.set(key, 2.0) || JsonUserDefaults(path).number(key) != 2.0)
        std::abort();
    return 0;
}
