// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>
#include <QList>
#include <QString>
#include <QUrl>

#include <optional>

// An installed application.
struct Application {
    QString bundleIdentifier;
    QString name; // as the user knows it
    QIcon icon;
};

// The desktop's shared services around files and applications. A bundle identifier is the platform's name for an
// installed application: the desktop-file id without ".desktop" on Linux, the CFBundleIdentifier on macOS.
class Workspace {
public:
    virtual ~Workspace() = default;

    // The identifier of the application that has the focus; nothing when there is no such application or it has none.
    virtual std::optional<QString> frontmostBundleIdentifier() const = 0;

    // Opens a file or address with its default application. False when nothing could be started; returns at once.
    virtual bool open(const QUrl &url) = 0;

    // The icon of a file by its kind; never null, also for a file that has gone. Does not open the file.
    virtual QIcon icon(const QUrl &file) const = 0;

    // The installed application with that identifier.
    virtual std::optional<Application> application(const QString &bundleIdentifier) const = 0;

    // The identifier of the application that the user chose in an open panel; nothing when the file is none.
    virtual std::optional<QString> bundleIdentifier(const QUrl &chosenFile) const = 0;

    // The folders in which the user looks for applications, the one to begin with first; never empty.
    virtual QList<QUrl> applicationsFolders() const = 0;
};
