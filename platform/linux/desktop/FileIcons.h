// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QIcon>
#include <QStringList>
#include <QUrl>

// Chooses an installed full icon theme where the desktop has set none.
void chooseFallbackIconTheme();

// The MIME type of a file by its kind and name. Does not open the file.
QString mimeTypeByName(const QByteArray &path);

// Icons from the desktop's icon theme, and drawn ones where the theme has none.
class FileIcons {
public:
    // The icon for the kind of a file, never null. Does not open the file, which need not exist.
    QIcon file(const QUrl &url) const;

    // The icon of a desktop entry, given as a name or an absolute path. Never null.
    QIcon application(const QString &icon) const;

private:
    QIcon themed(const QStringList &names, const QString &drawn) const;

    mutable QHash<QString, QIcon> found; // by theme and names
};
