// SPDX-License-Identifier: MIT
#include "platform/linux/desktop/FrontmostApplication.h"

#include "platform/linux/desktop/DesktopEntries.h"
#include "platform/linux/files/DurableFile.h"
#include "platform/linux/x11/XcbConnection.h"

#include <QFile>
#include <QRegularExpression>

namespace {

constexpr quint32 kLongestText = 1024;   // 32-bit units
constexpr qint64 kLongestInfo = 1 << 16; // bytes

const QString kEntrySuffix = QStringLiteral(".desktop");

QByteArray propertyText(const xcb_get_property_reply_t *reply)
{
    constexpr quint8 kBits = 8;
    if (!reply || reply->format != kBits)
        return {};
    return {static_cast<const char *>(xcb_get_property_value(reply)), xcb_get_property_value_length(reply)};
}

// The identifier of a desktop entry, given by its identifier, its file name or its path.
QString entryIdentifier(const QString &text, const DesktopEntries &entries)
{
    if (text.startsWith(QLatin1Char('/')))
        return entries.identifier(QFile::encodeName(text)).value_or(QString());
    return text.endsWith(kEntrySuffix) ? text.chopped(kEntrySuffix.size()) : text;
}

} // namespace

std::optional<QString> bundleIdentifier(const WindowIdentity &window, const DesktopEntries &entries)
{
    const QStringList stated = {entryIdentifier(window.desktopFile, entries),
                                entryIdentifier(window.applicationId, entries), window.sandboxId};
    for (const QString &identifier : stated) {
        if (entries.path(identifier))
            return identifier;
    }
    for (const QString &name : {window.instanceName, window.className}) {
        if (auto found = entries.identifierForWindowClass(name))
            return found;
    }
    for (const QString &name : {window.className, window.instanceName}) {
        if (auto found = entries.identifierNamed(name))
            return found;
    }
    for (const QString &identifier : stated) {
        if (!identifier.isEmpty())
            return identifier;
    }
    return {};
}

QString sandboxIdentifier(const QByteArray &process)
{
    const auto flatpak = readRegularFile(process + "/root/.flatpak-info", kLongestInfo);
    if (flatpak) {
        static const QRegularExpression name(QStringLiteral("^name=(\\S+)$"), QRegularExpression::MultilineOption);
        return name.match(QString::fromUtf8(*flatpak)).captured(1);
    }
    const auto groups = readRegularFile(process + "/cgroup", kLongestInfo);
    if (groups) {
        // snap.<snap>.<application>, and an identifier of the run if there are several.
        static const QRegularExpression snap(QStringLiteral(
            "/snap\\.([a-z0-9-]+)\\.([A-Za-z0-9-]+?)(?:-[0-9a-f]{8}-[0-9a-f-]{27})?\\.(?:scope|service)"));
        const auto match = snap.match(QString::fromUtf8(*groups));
        if (match.hasMatch())
            return match.captured(1) + QLatin1Char('_') + match.captured(2);
    }
    return {};
}

std::optional<WindowIdentity> frontmostWindow(XcbConnection &xcb)
{
    const auto active = xcb.values(xcb.root(), xcb.atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW);
    if (active.empty() || active.front() == XCB_NONE || xcb.isOwn(active.front()))
        return {};

    // If the window has gone by now, every reply is null.
    const auto request = [&xcb, window = active.front()](xcb_atom_t property) {
        return xcb_get_property(xcb.get(), 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, kLongestText);
    };
    const auto text = [&xcb](xcb_get_property_cookie_t cookie) {
        return propertyText(xcb.reply(xcb_get_property_reply, cookie).get());
    };
    const auto desktopFile = request(xcb.atom("_KDE_NET_WM_DESKTOP_FILE"));
    const auto applicationId = request(xcb.atom("_GTK_APPLICATION_ID"));
    const auto windowClass = request(xcb.atom("WM_CLASS"));
    const auto process = request(xcb.atom("_NET_WM_PID"));

    WindowIdentity identity;
    identity.desktopFile = QString::fromUtf8(text(desktopFile));
    identity.applicationId = QString::fromUtf8(text(applicationId));
    // Two strings, each with a terminating null.
    const QList<QByteArray> names = text(windowClass).split('\0');
    identity.instanceName = QString::fromUtf8(names.value(0));
    identity.className = QString::fromUtf8(names.value(1));
    const auto pid = propertyValues(xcb.reply(xcb_get_property_reply, process).get());
    if (!pid.empty())
        identity.sandboxId = sandboxIdentifier("/proc/" + QByteArray::number(pid.front()));
    return identity;
}
