// SPDX-License-Identifier: MIT

// GIO names a field "signals", which is a keyword once Qt has been included.
#include <gio/gio.h>

#include "platform/linux/desktop/AutostartLoginItem.h"

#include "platform/linux/files/DurableFile.h"

#include <QCoreApplication>
#include <QFile>
#include <QStandardPaths>

#include <memory>

#include <sys/stat.h>
#include <unistd.h>

namespace {

const QString kFileName = QStringLiteral("/com.orvane.Parklet.desktop");
const QString kAutostart = QStringLiteral("/autostart");
constexpr qint64 kLongestEntry = 1 << 16; // bytes

constexpr char kGroup[] = "Desktop Entry";

struct KeyFileFree {
    void operator()(GKeyFile *file) const { g_key_file_unref(file); }
};

QString configurationFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
}

QStringList systemAutostartFolders()
{
    QStringList folders = QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation);
    folders.removeAll(configurationFolder());
    for (QString &folder : folders)
        folder += kAutostart;
    return folders;
}

// Escapes a value of the type "string": a backslash, and blanks at its ends.
QString escapedString(QString text)
{
    text.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
    text.replace(QLatin1Char('\n'), QStringLiteral("\\n"));
    text.replace(QLatin1Char('\r'), QStringLiteral("\\r"));
    text.replace(QLatin1Char('\t'), QStringLiteral("\\t"));
    return text;
}

// The name and comment of the menu entry, in every language.
QString descriptions()
{
    QFile entry(QStringLiteral(":/com.orvane.Parklet.desktop"));
    QString lines;
    if (!entry.open(QIODevice::ReadOnly))
        return lines;
    const QStringList all = QString::fromUtf8(entry.readAll()).split(QLatin1Char('\n'));
    for (const QString &line : all) {
        if (line.startsWith(QLatin1String("Comment")))
            lines += line + QLatin1Char('\n');
    }
    return lines;
}

bool exists(const QByteArray &path)
{
    struct stat status {};
    return ::lstat(path.constData(), &status) == 0;
}

// Whether the desktop would start the program of the entry at `path`.
bool isActive(const QByteArray &path)
{
    const auto contents = readRegularFile(path, kLongestEntry);
    if (!contents || contents->isEmpty())
        return false;
    const std::unique_ptr<GKeyFile, KeyFileFree> file(g_key_file_new());
    if (!g_key_file_load_from_data(file.get(), contents->constData(), static_cast<gsize>(contents->size()),
                                   G_KEY_FILE_NONE, nullptr))
        return false;
    const auto boolean = [&file](const char *key, bool fallback) {
        GError *error = nullptr;
        const bool value = g_key_file_get_boolean(file.get(), kGroup, key, &error) != FALSE;
        if (!error)
            return value;
        g_error_free(error);
        return fallback;
    };
    const auto string = [&file](const char *key) {
        const std::unique_ptr<char, decltype(&g_free)> value(g_key_file_get_string(file.get(), kGroup, key, nullptr),
                                                             g_free);
        return QByteArray(value.get());
    };
    if (boolean("Hidden", false) || !boolean("X-GNOME-Autostart-enabled", true) || string("Exec").isEmpty())
        return false;
    const QByteArray program = string("TryExec");
    return !program.startsWith('/') || ::access(program.constData(), X_OK) == 0;
}

} // namespace

QString execLine(const QString &program)
{
    QString quoted;
    for (const QChar character : program) {
        // The value follows the shell's rules: these characters are special even inside quotes.
        if (QStringLiteral("\"`$\\").contains(character))
            quoted += QLatin1Char('\\');
        quoted += character;
        if (character == QLatin1Char('%'))
            quoted += character;
    }
    return escapedString(QLatin1Char('"') + quoted + QLatin1Char('"'));
}

AutostartLoginItem::AutostartLoginItem()
    : AutostartLoginItem(configurationFolder() + kAutostart, systemAutostartFolders(),
                         QCoreApplication::applicationFilePath())
{
}

AutostartLoginItem::AutostartLoginItem(const QString &folder, const QStringList &otherFolders,
                                       const QString &startedProgram)
    : entry(QFile::encodeName(folder + kFileName))
    , systemFolders(otherFolders)
    , program(startedProgram)
{
}

QByteArray AutostartLoginItem::systemEntry() const
{
    for (const QString &folder : systemFolders) {
        QByteArray path = QFile::encodeName(folder + kFileName);
        if (exists(path))
            return path;
    }
    return {};
}

bool AutostartLoginItem::isEnabled() const
{
    // The user's entry overrides the system's, even when it disables it.
    return isActive(exists(entry) ? entry : systemEntry());
}

bool AutostartLoginItem::enable()
{
    const QString text = QStringLiteral("[Desktop Entry]\n"
                                        "Type=Application\n"
                                        "Name=Parklet\n"
                                        "%1"
                                        "Icon=com.orvane.Parklet\n"
                                        "Exec=%2\n"
                                        "TryExec=%3\n"
                                        "Terminal=false\n"
                                        "StartupNotify=false\n"
                                        "Hidden=false\n"
                                        "X-GNOME-Autostart-enabled=true\n"
                                        "X-LXQt-Need-Tray=true\n")
                             .arg(descriptions(), execLine(program), escapedString(program));
    return replaceFile(entry, text.toUtf8());
}

bool AutostartLoginItem::disable()
{
    if (!systemEntry().isEmpty())
        return replaceFile(entry, "[Desktop Entry]\nType=Application\nName=Parklet\nHidden=true\n");
    return ::unlink(entry.constData()) == 0 || !exists(entry);
}
