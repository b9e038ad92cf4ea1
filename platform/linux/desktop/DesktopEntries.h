// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

// What the desktop knows of an application from its desktop entry.
struct DesktopEntry {
    QString name; // in the user's language; empty when it states none
    QString icon; // a name in the icon theme or an absolute path
};

// Reads an application's desktop entry; nothing for a file that is none, or none that can be started here.
std::optional<DesktopEntry> readDesktopEntry(const QByteArray &path);

// The desktop entries of the installed applications, by their identifiers: the path below the applications folder with
// dashes for slashes and without ".desktop". An entry of an earlier folder stands in for those of later ones.
class DesktopEntries {
public:
    // Every applications folder of this session, also those that Flatpak and Snap export to.
    static QStringList standardFolders();

    explicit DesktopEntries(const QStringList &applicationsFolders = standardFolders());

    QStringList folders() const { return roots; }

    // The file of the entry with that identifier; nothing when there is none or it counts as deleted.
    std::optional<QByteArray> path(const QString &identifier) const;

    // The identifier that the file at `path` has, also when it is a link to an entry; its name for an entry elsewhere.
    std::optional<QString> identifier(const QByteArray &path) const;

    // The installed application whose windows have that class: as it states itself, else by its identifier, in any
    // case.
    std::optional<QString> identifierForWindowClass(const QString &windowClass) const;
    std::optional<QString> identifierNamed(const QString &name) const;

private:
    struct Stamp {
        QByteArray folder;
        qint64 modified; // nanoseconds since 1970; -1 when the folder is not there
    };

    struct Index {
        std::vector<Stamp> stamps;
        QSet<QString> seen;                    // identifiers
        QHash<QString, QString> byName;        // lower case
        QHash<QString, QString> byWindowClass; // lower case
        QSet<QString> unlistedClasses;         // those so far known only from an entry that no menu shows
    };

    const Index &index() const;
    static void scan(Index &index, const QByteArray &folder, const QString &prefix, int depth);

    QStringList roots;

    // What the folders hold, read when first asked for and again when one of them has changed.
    mutable Index known;
};
