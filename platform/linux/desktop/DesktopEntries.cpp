// SPDX-License-Identifier: MIT

// GIO names a field "signals", which is a keyword once Qt has been included.
#include <gio/gdesktopappinfo.h>

#include "platform/linux/desktop/DesktopEntries.h"

#include "platform/linux/files/DurableFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>
#include <memory>

#include <sys/stat.h>

namespace {

const QString kSuffix = QStringLiteral(".desktop");
constexpr qint64 kLongestEntry = 1 << 20; // bytes
constexpr int kDeepestFolder = 8;         // also stops at a loop of links
constexpr qint64 kNotThere = -1;

struct KeyFileFree {
    void operator()(GKeyFile *file) const { g_key_file_unref(file); }
};
struct ObjectUnref {
    void operator()(void *object) const { g_object_unref(object); }
};

qint64 modificationTime(const QByteArray &folder)
{
    struct stat status {};
    if (::stat(folder.constData(), &status) != 0 || !S_ISDIR(status.st_mode))
        return kNotThere;
    return fileIdentity(status).modified;
}

bool isFolder(const QString &path)
{
    return QFileInfo(path).isDir();
}

QString takeString(char *text)
{
    QString string = QString::fromUtf8(text);
    g_free(text);
    return string;
}

// Reads only what the index needs, without a full parse: there are hundreds of entries.
struct EntryHeader {
    QByteArray windowClass;
    bool hidden = false;
    bool listed = true;
};

EntryHeader readHeader(const QByteArray &contents)
{
    EntryHeader header;
    bool inGroup = false;
    for (const QByteArray &untrimmed : contents.split('\n')) {
        const QByteArray line = untrimmed.trimmed();
        if (line.startsWith('[')) {
            if (inGroup)
                break;
            inGroup = line == "[Desktop Entry]";
            continue;
        }
        const qsizetype equals = line.indexOf('=');
        if (!inGroup || equals < 0)
            continue;
        const QByteArray key = line.left(equals).trimmed();
        const QByteArray value = line.mid(equals + 1).trimmed();
        if (key == "StartupWMClass")
            header.windowClass = value;
        else if (key == "Hidden")
            header.hidden = value == "true";
        else if (key == "NoDisplay")
            header.listed = value != "true";
    }
    return header;
}

// Tries the identifier as a file of `folder`, then each of its dashes as a subfolder.
std::optional<QByteArray> findBelow(const QString &folder, const QString &identifier)
{
    const QByteArray file = QFile::encodeName(folder + QLatin1Char('/') + identifier + kSuffix);
    struct stat status {};
    if (::stat(file.constData(), &status) == 0)
        return file;
    for (qsizetype dash = identifier.indexOf(QLatin1Char('-')); dash > 0;
         dash = identifier.indexOf(QLatin1Char('-'), dash + 1)) {
        const QString subfolder = folder + QLatin1Char('/') + identifier.left(dash);
        if (!isFolder(subfolder))
            continue;
        if (auto found = findBelow(subfolder, identifier.mid(dash + 1)))
            return found;
    }
    return {};
}

std::optional<QString> identifierBelow(const QString &folder, const QString &path)
{
    const QString root = folder + QLatin1Char('/');
    if (!path.startsWith(root) || !path.endsWith(kSuffix))
        return {};
    return path.mid(root.size()).chopped(kSuffix.size()).replace(QLatin1Char('/'), QLatin1Char('-'));
}

} // namespace

std::optional<DesktopEntry> readDesktopEntry(const QByteArray &path)
{
    const auto contents = readRegularFile(path, kLongestEntry);
    if (!contents || contents->isEmpty())
        return {};
    const std::unique_ptr<GKeyFile, KeyFileFree> file(g_key_file_new());
    if (!g_key_file_load_from_data(file.get(), contents->constData(), static_cast<gsize>(contents->size()),
                                   G_KEY_FILE_NONE, nullptr))
        return {};
    const std::unique_ptr<GDesktopAppInfo, ObjectUnref> info(g_desktop_app_info_new_from_keyfile(file.get()));
    if (!info || g_desktop_app_info_get_is_hidden(info.get()))
        return {};
    const bool started = g_desktop_app_info_has_key(info.get(), G_KEY_FILE_DESKTOP_KEY_EXEC) ||
                         g_desktop_app_info_get_boolean(info.get(), G_KEY_FILE_DESKTOP_KEY_DBUS_ACTIVATABLE);
    if (!started)
        return {};
    return DesktopEntry{takeString(g_desktop_app_info_get_locale_string(info.get(), G_KEY_FILE_DESKTOP_KEY_NAME)),
                        takeString(g_desktop_app_info_get_locale_string(info.get(), G_KEY_FILE_DESKTOP_KEY_ICON))};
}

QStringList DesktopEntries::standardFolders()
{
    QStringList folders;
    const auto add = [&folders](const QString &folder) {
        const QString clean = QDir::cleanPath(folder);
        if (!folders.contains(clean))
            folders.append(clean);
    };
    const QString applications = QStringLiteral("/applications");
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    const QStringList shared = QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation);
    for (const QString &folder : shared)
        add(folder + applications);
    // XDG_DATA_DIRS has these only where the packages of Flatpak and Snap have set up the session.
    add(data + QStringLiteral("/flatpak/exports/share") + applications);
    add(QStringLiteral("/var/lib/flatpak/exports/share") + applications);
    add(QStringLiteral("/var/lib/snapd/desktop") + applications);
    return folders;
}

DesktopEntries::DesktopEntries(const QStringList &applicationsFolders)
    : roots(applicationsFolders)
{
}

std::optional<QByteArray> DesktopEntries::path(const QString &identifier) const
{
    if (identifier.isEmpty() || identifier.contains(QLatin1Char('/')) || identifier.contains(QChar::Null))
        return {};
    for (const QString &root : roots) {
        if (auto found = findBelow(root, identifier))
            return found;
    }
    return {};
}

std::optional<QString> DesktopEntries::identifier(const QByteArray &path) const
{
    const QString given = QDir::cleanPath(QFile::decodeName(path));
    if (!given.endsWith(kSuffix))
        return {};
    for (const QString &root : roots) {
        if (auto found = identifierBelow(root, given))
            return found;
    }
    const QString target = QFileInfo(given).canonicalFilePath();
    for (const QString &root : roots) {
        const QString folder = QFileInfo(root).canonicalFilePath();
        auto found = folder.isEmpty() ? std::nullopt : identifierBelow(folder, target);
        if (found)
            return found;
    }
    return QFileInfo(given).fileName().chopped(kSuffix.size());
}

std::optional<QString> DesktopEntries::identifierForWindowClass(const QString &windowClass) const
{
    const auto &classes = index().byWindowClass;
    auto found = classes.constFind(windowClass.toLower());
    return found != classes.cend() ? std::optional(*found) : std::nullopt;
}

std::optional<QString> DesktopEntries::identifierNamed(const QString &name) const
{
    const auto &names = index().byName;
    auto found = names.constFind(name.toLower());
    return found != names.cend() ? std::optional(*found) : std::nullopt;
}

const DesktopEntries::Index &DesktopEntries::index() const
{
    const auto unchanged = [](const Stamp &stamp) { return modificationTime(stamp.folder) == stamp.modified; };
    if (known.stamps.empty() || !std::all_of(known.stamps.cbegin(), known.stamps.cend(), unchanged)) {
        known = {};
        for (const QString &root : roots)
            scan(known, QFile::encodeName(root), QString(), 0);
    }
    return known;
}

void DesktopEntries::scan(Index &index, const QByteArray &folder, const QString &prefix, int depth)
{
    index.stamps.push_back({folder, modificationTime(folder)});
    if (index.stamps.back().modified == kNotThere || depth == kDeepestFolder)
        return;
    const QDir directory(QFile::decodeName(folder));
    const QStringList files = directory.entryList({QLatin1Char('*') + kSuffix}, QDir::Files, QDir::Name);
    for (const QString &file : files) {
        const QString identifier = prefix + file.chopped(kSuffix.size());
        if (index.seen.contains(identifier))
            continue;
        index.seen.insert(identifier);
        const auto contents = readRegularFile(folder + '/' + QFile::encodeName(file), kLongestEntry);
        const EntryHeader header = contents ? readHeader(*contents) : EntryHeader{{}, true, false};
        if (header.hidden)
            continue;
        if (!index.byName.contains(identifier.toLower()))
            index.byName.insert(identifier.toLower(), identifier);
        const QString windowClass = QString::fromUtf8(header.windowClass).toLower();
        if (windowClass.isEmpty())
            continue;
        const bool taken = index.byWindowClass.contains(windowClass);
        if (!taken || (header.listed && index.unlistedClasses.remove(windowClass)))
            index.byWindowClass.insert(windowClass, identifier);
        if (!taken && !header.listed)
            index.unlistedClasses.insert(windowClass);
    }
    const QStringList subfolders = directory.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &subfolder : subfolders)
        scan(index, folder + '/' + QFile::encodeName(subfolder), prefix + subfolder + QLatin1Char('-'), depth + 1);
}
