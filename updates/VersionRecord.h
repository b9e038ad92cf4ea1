// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <optional>

// What the maker publishes about the newest version.
struct VersionRecord {
    QString version;
    QUrl url;      // the page to download it from
    QString notes; // release notes; empty when there are none
};

// Reads the record in `body`: a JSON object with the strings "version" and "url", which is a valid URL, and optionally
// the string "notes". Returns nothing for anything else.
std::optional<VersionRecord> parseVersionRecord(const QByteArray &body);
