// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>
#include <QList>
#include <QString>
#include <QUrl>

#include <functional>
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

    // Opens a file or address with its default application. False when nothing could be started for an address; what a
    // file is has to be found out first, which is not waited for. Returns at once.
    virtual bool open(const QUrl &url) = 0;

    // Called on the main thread, at once or later; never with a null icon.
    using IconFound = std::function<void(const QIcon &icon)>;

    // Finds the icon of a file by its kind, also of one that has gone. Where the file's file system takes longer than
    // one blink, or does not answer, the icon by the file's name comes first. Does not open the file. Main thread only.
    virtual void icon(const QUrl &file, IconFound found) = 0;

    // The installed application with that identifier.
    virtual std::optional<Application> application(const QString &bundleIdentifier) const = 0;

    // The identifier of an application that the user picked in an open panel. Nothing when the file is no application.
    virtual std::optional<QString> bundleIdentifier(const QUrl &chosenFile) const = 0;

    // The folders in which the user looks for applications, the one to begin with first; never empty.
    virtual QList<QUrl> applicationsFolders() const = 0;
};
