// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/helpers/Protocol.h"

#include <QByteArray>
#include <QHash>
#include <QIcon>
#include <QStringList>
#include <QUrl>

// Chooses an installed full icon theme where the desktop has set none.
void chooseFallbackIconTheme();

// The MIME type of a file by its kind and name; nothing is asked of the file.
QString mimeTypeByName(const QByteArray &path, FileKind kind);

// Icons from the desktop's icon theme, and drawn ones where the theme has none.
class FileIcons {
public:
    // The icon of a file of that kind; never null. Nothing is asked of the file, which need not exist.
    QIcon file(const QUrl &url, FileKind kind) const;

    // The icon of a desktop entry, given as a name or an absolute path. Never null.
    QIcon application(const QString &icon) const;

private:
    QIcon themed(const QStringList &names, const QString &drawn) const;

    mutable QHash<QString, QIcon> found; // by theme and names
};
