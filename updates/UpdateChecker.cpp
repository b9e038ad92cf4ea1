// SPDX-License-Identifier: MIT
#include "updates/UpdateChecker.h"

#include "platform/Platform.h"
#include "updates/BoundedFetch.h"
#include "updates/UpdateAlerts.h"
#include "updates/VersionComparison.h"
#include "updates/VersionRecord.h"

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

// Whether a reply from the address `from` may redirect to `to`: only to a web server, and never from https to http.
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

void UpdateChecker::check(WhenUpToDate whenUpToDate)
{
    fetch(versionURL, kMostRedirects, QDeadlineTimer(milliseconds(longestCheck)), whenUpToDate);
}

void UpdateChecker::fetch(const QUrl &url, int redirects, QDeadlineTimer end, WhenUpToDate whenUpToDate)
{
    new BoundedFetch(
        url, milliseconds(timeout), end,
        [this, url, redirects, end, whenUpToDate](const std::optional<BoundedFetch::Reply> &reply) {
            if (!reply)
                return;
            // The body of a redirect without a target may hold the record.
            if (!isRedirect(reply->status) || reply->location.isEmpty()) {
                received(reply->body, whenUpToDate);
                return;
            }
            const QUrl next = url.resolved(QUrl::fromEncoded(reply->location));
            if (redirects > 0 && mayRedirect(url, next))
                fetch(next, redirects - 1, end, whenUpToDate);
        },
        this);
}

void UpdateChecker::received(const QByteArray &body, WhenUpToDate whenUpToDate)
{
    const auto record = parseVersionRecord(body);
    if (!record)
        return;
    // The alert runs a nested event loop, which must not happen inside a callback of the fetch.
    platform.mainQueue->async(this, [this, record = *record, whenUpToDate] { tell(record, whenUpToDate); });
}

void UpdateChecker::tell(const VersionRecord &record, WhenUpToDate whenUpToDate)
{
    if (std::is_gt(compareVersions(record.version, runningVersion))) {
        // The checker may be deleted before the user answers.
        Platform &services = platform;
        if (services.alerts->runModal(updateAlert(record)).isFirstButton())
            services.workspace->open(record.url);
    } else if (whenUpToDate == WhenUpToDate::SaySo) {
        platform.alerts->runModal(upToDateAlert());
    }
}
