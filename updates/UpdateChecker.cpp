// SPDX-License-Identifier: MIT
#include "updates/UpdateChecker.h"

#include "platform/Platform.h"
#include "updates/BoundedFetch.h"
#include "updates/VersionComparison.h"
#include "updates/VersionRecord.h"

#include <QPointer>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <compare>

namespace {

constexpr int kMostRedirects = 20;
constexpr double kMillisecondsPerSecond = 1000.0;

std::chrono::milliseconds milliseconds(double seconds)
{
    return std::chrono::milliseconds(std::llround(seconds * kMillisecondsPerSecond));
}

bool isRedirect(int status)
{
    constexpr int kStatuses[] = {301, 302, 303, 305, 307, 308};
    return std::find(std::begin(kStatuses), std::end(kStatuses), status) != std::end(kStatuses);
}

// Whether a reply from one address may send us to the other: to another web server, and to none that is less safe.
bool mayRedirect(const QUrl &from, const QUrl &to)
{
    const bool isSafe = to.scheme() == QLatin1String("https");
    return to.isValid() && (isSafe || (to.scheme() == QLatin1String("http") && from.scheme() == to.scheme()));
}

} // namespace

UpdateChecker::UpdateChecker(Platform &services, const QUrl &url, const QString &version, QObject *parent)
    : QObject(parent)
    , versionURL(url)
    , platform(services)
    , runningVersion(version)
{
    if (versionURL.isEmpty() || !versionURL.isValid())
        qFatal("The address of the version record is not valid.");
}

void UpdateChecker::check(bool silent)
{
    fetch(versionURL, kMostRedirects, QDeadlineTimer(milliseconds(longestCheck)), silent);
}

void UpdateChecker::fetch(const QUrl &url, int redirects, QDeadlineTimer end, bool silent)
{
    new BoundedFetch(
        url, milliseconds(timeout), end,
        [this, url, redirects, end, silent](const std::optional<BoundedFetch::Reply> &reply) {
            if (!reply)
                return;
            // The body of a redirect that leads nowhere may hold the record.
            if (!isRedirect(reply->status) || reply->location.isEmpty()) {
                received(reply->body, silent);
                return;
            }
            const QUrl next = url.resolved(QUrl::fromEncoded(reply->location));
            if (redirects > 0 && mayRedirect(url, next))
                fetch(next, redirects - 1, end, silent);
        },
        this);
}

void UpdateChecker::received(const QByteArray &body, bool silent)
{
    const auto record = parseVersionRecord(body);
    if (!record)
        return;
    // The alert turns the main loop; it must not do so inside the reply's own signal.
    platform.mainQueue->async([checker = QPointer<UpdateChecker>(this), record = *record, silent] {
        if (checker)
            checker->tell(record, silent);
    });
}

void UpdateChecker::tell(const VersionRecord &record, bool silent)
{
    if (std::is_gt(compareVersions(record.version, runningVersion))) {
        // The checker may be gone by the time the user has answered.
        Platform &services = platform;
        if (services.alerts->runModal(updateAlert(record)).isFirstButton())
            services.workspace->open(record.url);
    } else if (!silent) {
        platform.alerts->runModal(upToDateAlert());
    }
}
