// SPDX-License-Identifier: MIT
#include "platform/macos/MacWorkspace.h"

#include "platform/FileURLs.h"
#include "platform/macos/MacConversions.h"
#include "platform/macos/MacIcon.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileIconProvider>
#include <QPointer>
#include <QThreadPool>
#include <QTimer>

#include <memory>

#import <AppKit/AppKit.h>

namespace {

constexpr int kBlink = 100; // milliseconds

} // namespace

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

void MacWorkspace::icon(const QUrl &file, IconFound found)
{
    const auto isFound = std::make_shared<bool>(false);
    QTimer::singleShot(kBlink, &receiver, [isFound, found] {
        if (!*isFound)
            found(QFileIconProvider().icon(QFileIconProvider::File));
    });
    // The system's search for a file's icon blocks on its file system. The application ends after the last of these
    // threads.
    QThreadPool::globalInstance()->start(
        [application = QCoreApplication::instance(), target = QPointer<QObject>(&receiver), file, found, isFound] {
            @autoreleasepool {
                NSString *path = toNSString(QFile::decodeName(fileSystemPath(file)));
                const QIcon icon = macIcon([NSWorkspace.sharedWorkspace iconForFile:path]);
                QMetaObject::invokeMethod(
                    application,
                    [target, found, icon, isFound] {
                        *isFound = true;
                        if (target)
                            found(icon);
                    },
                    Qt::QueuedConnection);
            }
        });
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
