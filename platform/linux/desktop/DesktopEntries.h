// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

// An application, as its desktop entry describes it.
struct DesktopEntry {
    QString name; // in the user's language; empty when there is none
    QString icon; // a name in the icon theme or an absolute path
};

// Reads an application's desktop entry. Nothing for any other file, or an application that cannot be started here.
std::optional<DesktopEntry> readDesktopEntry(const QByteArray &path);

// The desktop entries of the installed applications, by identifier: the path below the applications folder, with dashes
// for slashes and without ".desktop". An entry in an earlier folder overrides those in later ones.
class DesktopEntries {
public:
    // The applications folders of this session, including those of Flatpak and Snap.
    static QStringList standardFolders();

    explicit DesktopEntries(const QStringList &applicationsFolders = standardFolders());

    QStringList folders() const { return roots; }

    // The file of the entry with that identifier. Nothing when there is none, or it is marked as deleted.
    std::optional<QByteArray> path(const QString &identifier) const;

    // The identifier of the entry at `path`, which may be a link to an entry. An entry outside the folders has its
    // name.
    std::optional<QString> identifier(const QByteArray &path) const;

    // The installed application whose windows have that class: by its StartupWMClass, or else by its identifier,
    // ignoring case.
    std::optional<QString> identifierForWindowClass(const QString &windowClass) const;
    std::optional<QString> identifierNamed(const QString &name) const;

private:
    struct Stamp {
        QByteArray folder;
        qint64 modified; // nanoseconds since 1970; -1 when the folder is missing
    };

    struct Index {
        std::vector<Stamp> stamps;
        QSet<QString> seen;                    // identifiers
        QHash<QString, QString> byName;        // lower case
        QHash<QString, QString> byWindowClass; // lower case
        QSet<QString> unlistedClasses;         // classes known only from entries that no menu shows
    };

    const Index &index() const;
    static void scan(Index &index, const QByteArray &folder, const QString &prefix, int depth);

    QStringList roots;

    // The contents of the folders, read at first use and again after a change.
    mutable Index known;
};
