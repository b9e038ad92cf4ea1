// SPDX-License-Identifier: MIT
#pragma once

#include <QDeadlineTimer>
#include <QObject>
#include <QString>
#include <QUrl>

struct Platform;
struct VersionRecord;

// Fetches the published version record and tells the user of a newer version.
class UpdateChecker : public QObject {
    Q_OBJECT

public:
    // `versionURL` is the address of the record; one that is not valid is a programming error and fatal.
    UpdateChecker(Platform &platform, const QUrl &versionURL, const QString &runningVersion, QObject *parent = nullptr);

    // Starts one check, independent of those under way. When there is no newer version it says so, unless `silent`.
    // A check that fails, for whatever reason, ends without a word.
    void check(bool silent);

    const QUrl versionURL;

    // Seconds without data after which a check is given up.
    double timeout = 5.0;

    // Seconds after which a check that still goes on is given up, redirects included.
    double longestCheck = 30.0;

private:
    void fetch(const QUrl &url, int redirects, QDeadlineTimer end, bool silent);
    void received(const QByteArray &body, bool silent);
    void tell(const VersionRecord &record, bool silent);

    Platform &platform;
    const QString runningVersion;
};
