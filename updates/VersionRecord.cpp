// SPDX-License-Identifier: MIT
#include "updates/VersionRecord.h"

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
