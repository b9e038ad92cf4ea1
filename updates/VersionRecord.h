// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <optional>

struct Alert;

// What the maker publishes about the newest version.
struct VersionRecord {
    QString version;
    QUrl url;      // the page to download it from
    QString notes; // release notes; empty when there are none
};

// The record in `body`: a JSON object with the strings "version" and "url", the latter a valid URL, and perhaps
// "notes". Nothing for anything else.
std::optional<VersionRecord> parseVersionRecord(const QByteArray &body);

// What tells the user that `record` is newer; its first button is the download.
Alert updateAlert(const VersionRecord &record);

// What tells the user that nothing is newer.
Alert upToDateAlert();
