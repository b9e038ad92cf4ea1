// SPDX-License-Identifier: MIT
#pragma once

#include <QDeadlineTimer>
#include <QObject>
#include <QString>
#include <QUrl>

struct Platform;
struct VersionRecord;

// What a check does when there is no newer version.
enum class WhenUpToDate { SayNothing, SaySo };

// Fetches the published version record and tells the user about a newer version.
class UpdateChecker : public QObject {
    Q_OBJECT

public:
    // `versionURL` is the address of the record. An address that is not valid is a programming error and fatal.
    UpdateChecker(Platform &platform, const QUrl &versionURL, const QString &runningVersion, QObject *parent = nullptr);

    // Starts one check, independent of those in progress. A newer version is always reported. A check that fails, for
    // any reason, reports nothing.
    void check(WhenUpToDate whenUpToDate);

    const QUrl versionURL;

    // A check fails after so many seconds without data.
    double timeout = 5.0;

    // A check fails when it takes more seconds than this, all redirects included.
    double longestCheck = 30.0;

private:
    void fetch(const QUrl &url, int redirects, QDeadlineTimer end, WhenUpToDate whenUpToDate);
    void received(const QByteArray &body, WhenUpToDate whenUpToDate);
    void tell(const VersionRecord &record, WhenUpToDate whenUpToDate);

    Platform &platform;
    const QString runningVersion;
};
