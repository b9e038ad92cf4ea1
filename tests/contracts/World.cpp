// SPDX-License-Identifier: MIT
#include "tests/contracts/World.h"

#include <QFile>

QUrl World::makeFile(const QString &name, const QByteArray &contents) const
{
    QFile file(folder.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size())
        qFatal("Cannot write %s", qPrintable(file.fileName()));
    return QUrl::fromLocalFile(file.fileName());
}
