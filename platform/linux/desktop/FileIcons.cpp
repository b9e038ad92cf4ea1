// SPDX-License-Identifier: MIT
#include "platform/linux/desktop/FileIcons.h"

#include "platform/FileURLs.h"
#include "platform/linux/looks/SymbolIconEngine.h"

#include <QColor>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMimeDatabase>

#include <sys/stat.h>

namespace {

constexpr int kProbeSize = 32; // pixels

const QString kFolderType = QStringLiteral("inode/directory");
const QString kUnknownType = QStringLiteral("application/octet-stream");

// Themes with an icon for every common kind of file, the preferred one first.
const QStringList kFullThemes = {
    QStringLiteral("Adwaita"), QStringLiteral("breeze"), QStringLiteral("Yaru"),
    QStringLiteral("Papirus"), QStringLiteral("Mint-Y"), QStringLiteral("elementary"),
    QStringLiteral("gnome"),   QStringLiteral("oxygen"), QStringLiteral("Tango"),
};

bool isFullTheme(const QString &name)
{
    if (name.isEmpty() || name == QLatin1String("hicolor"))
        return false;
    for (const QString &folder : QIcon::themeSearchPaths()) {
        if (QFileInfo::exists(folder + QLatin1Char('/') + name + QStringLiteral("/index.theme")))
            return true;
    }
    return false;
}

QIcon drawnIcon(const QString &name)
{
    QFile file(QStringLiteral(":/fallback/") + name + QStringLiteral(".svg"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QIcon(new SymbolIconEngine(file.readAll(), QColor()));
}

// A theme may contain a broken file.
bool draws(const QIcon &icon)
{
    return !icon.isNull() && !icon.pixmap(QSize(kProbeSize, kProbeSize), 1.0).isNull();
}

} // namespace

void chooseFallbackIconTheme()
{
    if (isFullTheme(QIcon::themeName()) || isFullTheme(QIcon::fallbackThemeName()))
        return;
    for (const QString &name : kFullThemes) {
        if (isFullTheme(name)) {
            // Qt uses the fallback theme only if there is a theme.
            if (QIcon::themeName().isEmpty())
                QIcon::setThemeName(name);
            else
                QIcon::setFallbackThemeName(name);
            return;
        }
    }
}

QString mimeTypeByName(const QByteArray &path, FileKind kind)
{
    switch (kind) {
    case FileKind::Folder:
        return kFolderType;
    case FileKind::Fifo:
        return QStringLiteral("inode/fifo");
    case FileKind::Socket:
        return QStringLiteral("inode/socket");
    case FileKind::CharacterDevice:
        return QStringLiteral("inode/chardevice");
    case FileKind::BlockDevice:
        return QStringLiteral("inode/blockdevice");
    case FileKind::Regular:
    case FileKind::Missing:
        break;
    }
    const QString name = QFile::decodeName(path.mid(path.lastIndexOf('/') + 1));
    const QList<QMimeType> types = QMimeDatabase().mimeTypesForFileName(name);
    return types.isEmpty() ? kUnknownType : types.first().name();
}

QIcon FileIcons::file(const QUrl &url, FileKind kind) const
{
    QByteArray path = fileSystemPath(url);
    while (path.size() > 1 && path.endsWith('/'))
        path.chop(1);
    const QString typeName = mimeTypeByName(path, kind);
    if (typeName == kFolderType)
        return themed({QStringLiteral("folder"), QStringLiteral("inode-directory")}, QStringLiteral("folder"));

    const QMimeDatabase database;
    const QMimeType type = database.mimeTypeForName(typeName);
    QStringList names;
    if (type.isValid()) {
        names = {type.iconName(), type.genericIconName()};
        const QStringList ancestors = type.allAncestors();
        for (const QString &ancestor : ancestors) {
            const QMimeType parent = database.mimeTypeForName(ancestor);
            names += {parent.iconName(), parent.genericIconName()};
        }
    }
    names += {QStringLiteral("text-x-generic"), QStringLiteral("unknown")};
    return themed(names, QStringLiteral("document"));
}

QIcon FileIcons::application(const QString &icon) const
{
    QString name = icon;
    if (QDir::isAbsolutePath(icon)) {
        struct stat status {};
        if (::stat(QFile::encodeName(icon).constData(), &status) == 0 && S_ISREG(status.st_mode)) {
            QIcon picture(icon);
            if (draws(picture))
                return picture;
        }
        name.clear();
    }
    // Old entries give a file name.
    for (const QString &suffix : {QStringLiteral(".png"), QStringLiteral(".svg"), QStringLiteral(".xpm")}) {
        if (name.endsWith(suffix))
            name.chop(suffix.size());
    }
    QStringList names = {QStringLiteral("application-x-executable"), QStringLiteral("application-default-icon")};
    if (!name.isEmpty())
        names.prepend(name);
    return themed(names, QStringLiteral("application"));
}

QIcon FileIcons::themed(const QStringList &names, const QString &drawn) const
{
    const QString key = QIcon::themeName() + QLatin1Char('/') + names.join(QLatin1Char('/'));
    const auto known = found.constFind(key);
    if (known != found.cend())
        return *known;
    QIcon icon;
    for (const QString &name : names) {
        icon = QIcon::fromTheme(name);
        if (draws(icon))
            break;
        icon = {};
    }
    if (icon.isNull())
        icon = drawnIcon(drawn);
    found.insert(key, icon);
    return icon;
}
