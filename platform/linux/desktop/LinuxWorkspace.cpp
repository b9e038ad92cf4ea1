// SPDX-License-Identifier: MIT

// GIO names a field "signals", which is a keyword once Qt has been included.
#include <gio/gdesktopappinfo.h>

#include "platform/linux/desktop/LinuxWorkspace.h"

#include "platform/FileURLs.h"
#include "platform/linux/desktop/FrontmostApplication.h"
#include "platform/linux/helpers/FileHelpers.h"

#include <QDir>
#include <QFile>
#include <QMimeDatabase>

namespace {

constexpr quint32 kSniffedBytes = 4096;

struct ObjectUnref {
    void operator()(void *object) const { g_object_unref(object); }
};
template<typename T>
using GObjectPointer = std::unique_ptr<T, ObjectUnref>;

// The file's type by its kind and name, or by its first bytes where the name says nothing.
QString mimeTypeOf(const QByteArray &path, FileKind kind, const QByteArray &start)
{
    QString byName = mimeTypeByName(path, kind);
    if (byName != QLatin1String("application/octet-stream") || start.isEmpty())
        return byName;
    return QMimeDatabase().mimeTypeForData(start).name();
}

void openFile(const QByteArray &path, const QString &mimeType)
{
    const GObjectPointer<GAppInfo> handler(g_app_info_get_default_for_type(mimeType.toUtf8().constData(), FALSE));
    if (!handler)
        return;
    const GObjectPointer<GFile> file(g_file_new_for_path(path.constData()));
    GList files{file.get(), nullptr, nullptr};
    g_app_info_launch(handler.get(), &files, nullptr, nullptr);
}

bool openAddress(const QUrl &url)
{
    if (url.scheme().isEmpty())
        return false;
    const GObjectPointer<GAppInfo> handler(g_app_info_get_default_for_uri_scheme(url.scheme().toUtf8().constData()));
    if (!handler)
        return false;
    QByteArray address = url.toEncoded();
    GList addresses{address.data(), nullptr, nullptr};
    return g_app_info_launch_uris(handler.get(), &addresses, nullptr, nullptr) != FALSE;
}

} // namespace

LinuxWorkspace::LinuxWorkspace(Frontmost frontmostWindow, std::shared_ptr<FileHelpers> fileHelpers,
                               const DesktopEntries &desktopEntries)
    : frontmost(std::move(frontmostWindow))
    , files(std::move(fileHelpers))
    , entries(desktopEntries)
{
    chooseFallbackIconTheme();
}

std::optional<QString> LinuxWorkspace::frontmostBundleIdentifier() const
{
    const auto window = frontmost ? frontmost() : std::nullopt;
    return window ? ::bundleIdentifier(*window, entries) : std::nullopt;
}

bool LinuxWorkspace::open(const QUrl &url)
{
    if (!url.isLocalFile())
        return openAddress(url);
    const QByteArray path = fileSystemPath(url);
    files->look(path, kSniffedBytes, [path](FileKind kind, const QByteArray &start) {
        if (kind != FileKind::Missing)
            openFile(path, mimeTypeOf(path, kind, start));
    });
    return true;
}

void LinuxWorkspace::icon(const QUrl &file, IconFound found)
{
    files->look(
        fileSystemPath(file), 0,
        [this, file, found](FileKind kind, const QByteArray &) { found(icons.file(file, kind)); },
        [this, file, found] {
            const bool isNamedLikeAFolder = file.path().endsWith(QLatin1Char('/'));
            found(icons.file(file, isNamedLikeAFolder ? FileKind::Folder : FileKind::Regular));
        });
}

std::optional<Application> LinuxWorkspace::application(const QString &bundleIdentifier) const
{
    const auto path = entries.path(bundleIdentifier);
    const auto entry = path ? readDesktopEntry(*path) : std::nullopt;
    if (!entry)
        return {};
    return Application{bundleIdentifier, entry->name.isEmpty() ? bundleIdentifier : entry->name,
                       icons.application(entry->icon)};
}

std::optional<QString> LinuxWorkspace::bundleIdentifier(const QUrl &chosenFile) const
{
    if (!chosenFile.isLocalFile())
        return {};
    const QByteArray path = fileSystemPath(chosenFile);
    if (!readDesktopEntry(path))
        return {};
    return entries.identifier(path);
}

QList<QUrl> LinuxWorkspace::applicationsFolders() const
{
    // The folder with the most entries comes first: the user's own folder often has only a few.
    std::vector<std::pair<qsizetype, QString>> folders;
    for (const QString &folder : entries.folders()) {
        const qsizetype count = QDir(folder).entryList({QStringLiteral("*.desktop")}, QDir::Files).size();
        if (count > 0)
            folders.emplace_back(count, folder);
    }
    std::stable_sort(folders.begin(), folders.end(), [](const auto &a, const auto &b) { return a.first > b.first; });
    if (folders.empty())
        return {QUrl::fromLocalFile(QStringLiteral("/usr/share/applications"))};
    QList<QUrl> urls;
    for (const auto &[count, folder] : folders)
        urls.append(QUrl::fromLocalFile(folder));
    return urls;
}
