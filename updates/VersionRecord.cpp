// SPDX-License-Identifier: MIT
#include "updates/VersionRecord.h"

#include "platform/Alerts.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

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
    alert.informativeText =
        record.notes.isEmpty()
            ? Text::tr("Version %1 is available.").arg(record.version)
            : Text::tr("Version %1 is available.\n\nRelease notes: %2").arg(record.version, record.notes);
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
