// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QIcon>
#include <QStringList>
#include <QUrl>

// Makes an installed full icon theme step in where the desktop has set none.
void chooseFallbackIconTheme();

// The MIME type of a file by its kind and name; the file is not opened.
QString mimeTypeByName(const QByteArray &path);

// Icons from the desktop's icon theme, with drawn ones of our own where it has none.
class FileIcons {
public:
    // The icon of a file's kind; never null. The file is not opened and need not exist.
    QIcon file(const QUrl &url) const;

    // The icon of a desktop entry, a name or an absolute path; never null.
    QIcon application(const QString &icon) const;

private:
    QIcon themed(const QStringList &names, const QString &drawn) const;

    mutable QHash<QString, QIcon> found; // by theme and names
};
