// SPDX-License-Identifier: MIT
#include "platform/macos/MacWorkspace.h"

#include "platform/FileURLs.h"
#include "platform/macos/MacConversions.h"
#include "platform/macos/MacIcon.h"

#include <QDir>
#include <QFile>

#import <AppKit/AppKit.h>

std::optional<QString> MacWorkspace::frontmostBundleIdentifier() const
{
    NSString *identifier = NSWorkspace.sharedWorkspace.frontmostApplication.bundleIdentifier;
    if (!identifier)
        return {};
    return fromNSString(identifier);
}

bool MacWorkspace::open(const QUrl &url)
{
    NSURL *address = toNSURL(url);
    return address && [NSWorkspace.sharedWorkspace openURL:address];
}

QIcon MacWorkspace::icon(const QUrl &file) const
{
    NSString *path = toNSString(QFile::decodeName(fileSystemPath(file)));
    return macIcon([NSWorkspace.sharedWorkspace iconForFile:path]);
}

std::optional<Application> MacWorkspace::application(const QString &bundleIdentifier) const
{
    NSURL *url = [NSWorkspace.sharedWorkspace URLForApplicationWithBundleIdentifier:toNSString(bundleIdentifier)];
    NSString *path = url.path;
    if (!path)
        return {};
    return Application{bundleIdentifier, fromNSString(path.lastPathComponent.stringByDeletingPathExtension),
                       macIcon([NSWorkspace.sharedWorkspace iconForFile:path])};
}

std::optional<QString> MacWorkspace::bundleIdentifier(const QUrl &chosenFile) const
{
    if (!chosenFile.isLocalFile())
        return {};
    NSString *identifier = [NSBundle bundleWithURL:toNSURL(chosenFile)].bundleIdentifier;
    if (identifier.length == 0)
        return {};
    return fromNSString(identifier);
}

QList<QUrl> MacWorkspace::applicationsFolders() const
{
    return {QUrl::fromLocalFile(QStringLiteral("/Applications")),
            QUrl::fromLocalFile(QDir::homePath() + QStringLiteral("/Applications")),
            QUrl::fromLocalFile(QStringLiteral("/System/Applications"))};
}
