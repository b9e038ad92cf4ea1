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

    // The identifier of the application that has the focus. Nothing when there is none, or it has no identifier.
    virtual std::optional<QString> frontmostBundleIdentifier() const = 0;

    // Opens a file or address with its default application, and returns at once. False when no application starts.
    virtual bool open(const QUrl &url) = 0;

    // The icon for the kind of a file. Never null, even if the file is missing. Does not open the file.
    virtual QIcon icon(const QUrl &file) const = 0;

    // The installed application with that identifier.
    virtual std::optional<Application> application(const QString &bundleIdentifier) const = 0;

    // The identifier of an application that the user picked in an open panel. Nothing when the file is no application.
    virtual std::optional<QString> bundleIdentifier(const QUrl &chosenFile) const = 0;

    // The folders in which the user looks for applications, the one to begin with first; never empty.
    virtual QList<QUrl> applicationsFolders() const = 0;
};
