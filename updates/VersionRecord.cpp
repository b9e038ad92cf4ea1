// SPDX-License-Identifier: MIT
#include "updates/VersionRecord.h"

#include "platform/Alerts.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

// What is shown of texts from outside, in characters. A record may be of any length, an alert may not.
constexpr qsizetype kLongestVersion = 64;
constexpr qsizetype kLongestNotes = 4000;

QString shortened(const QString &text, qsizetype longest)
{
    return text.size() <= longest ? text : text.left(longest) + QChar(u'…');
}

struct Text {
    Q_DECLARE_TR_FUNCTIONS(UpdateChecker)
};

} // namespace

std::optional<VersionRecord> parseVersionRecord(const QByteArray &body)
{
    const QJsonDocument document = QJsonDocument::fromJson(body);
    if (!document.isObject())
        return {};
    const QJsonValue version = document[QLatin1String("version")];
    const QJsonValue address = document[QLatin1String("url")];
    if (!version.isString() || !address.isString())
        return {};
    const QUrl url(address.toString(), QUrl::StrictMode);
    if (url.isEmpty() || !url.isValid())
        return {};
    return VersionRecord{version.toString(), url, document[QLatin1String("notes")].toString()};
}

Alert updateAlert(const VersionRecord &record)
{
    Alert alert;
    alert.messageText = Text::tr("Parklet update available");
    // Both values come from outside and may hold markers themselves, so they are filled in together.
    const QString version = shortened(record.version, kLongestVersion);
    const QString notes = shortened(record.notes, kLongestNotes);
    alert.informativeText = notes.isEmpty()
                                ? Text::tr("Version %1 is available.").arg(version)
                                : Text::tr("Version %1 is available.\n\nRelease notes: %2").arg(version, notes);
    alert.buttons = {Text::tr("Download Update"), Text::tr("Later")};
    return alert;
}

Alert upToDateAlert()
{
    Alert alert;
    alert.messageText = Text::tr("Parklet is up to date");
    alert.informativeText = Text::tr("You're running the latest version.");
    alert.buttons = {Text::tr("OK")};
    return alert;
}
