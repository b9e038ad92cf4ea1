// SPDX-License-Identifier: MIT
#include "updates/VersionRecord.h"

#include "platform/Alerts.h"

#include <QJsonDocument>
#include <QJsonObject>

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
    alert.messageText = QStringLiteral("Parklet update available");
    alert.informativeText = QStringLiteral("Version ") + record.version + QStringLiteral(" is available.");
    if (!record.notes.isEmpty())
        alert.informativeText += QStringLiteral("\n\nRelease notes: ") + record.notes;
    alert.buttons = {QStringLiteral("Download Update"), QStringLiteral("Later")};
    return alert;
}

Alert upToDateAlert()
{
    Alert alert;
    alert.messageText = QStringLiteral("Parklet is up to date");
    alert.informativeText = QStringLiteral("You're running the latest version.");
    alert.buttons = {QStringLiteral("OK")};
    return alert;
}
