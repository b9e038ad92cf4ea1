// SPDX-License-Identifier: MIT
#include "tests/contracts/World.h"

#include <QFile>

#include <memory>
#include <optional>

QUrl World::makeFile(const QString &name, const QByteArray &contents) const
{
    QFile file(folder.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size())
        qFatal("Cannot write %s", qPrintable(file.fileName()));
    return QUrl::fromLocalFile(file.fileName());
}

bool World::waitForCopied(const QList<QUrl> &files)
{
    // An answer may come when nobody waits any more.
    struct Answer {
        bool isDue = false;
        std::optional<QList<QUrl>> files;
    };
    const auto last = std::make_shared<Answer>();
    return waitFor([this, last, &files] {
        if (last->files == files)
            return true;
        if (!last->isDue) {
            last->isDue = true;
            platform().generalPasteboard->readFileURLs([last](const QList<QUrl> &read) {
                last->isDue = false;
                last->files = read;
            });
        }
        return last->files == files;
    });
}
