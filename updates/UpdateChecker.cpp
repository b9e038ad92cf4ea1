// SPDX-License-Identifier: MIT
#include "updates/UpdateChecker.h"

#include "platform/Platform.h"
#include "updates/VersionComparison.h"
#include "updates/VersionRecord.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <compare>

namespace {

constexpr qint64 kLargestBody = 1 << 20; // bytes; a version record has a few hundred
constexpr int kMostRedirects = 20;
constexpr double kMillisecondsPerSecond = 1000.0;

// Whether the reply arrived whole. A status such as 404, 407 or 500 is an error to Qt, but its body is there all the
// same.
bool isComplete(const QNetworkReply &reply)
{
    switch (reply.error()) {
    case QNetworkReply::NoError:
    case QNetworkReply::ProxyAuthenticationRequiredError:
    case QNetworkReply::ContentAccessDenied:
    case QNetworkReply::ContentOperationNotPermittedError:
    case QNetworkReply::ContentNotFoundError:
    case QNetworkReply::AuthenticationRequiredError:
    case QNetworkReply::ContentConflictError:
    case QNetworkReply::ContentGoneError:
    case QNetworkReply::UnknownContentError:
    case QNetworkReply::InternalServerError:
    case QNetworkReply::OperationNotImplementedError:
    case QNetworkReply::ServiceUnavailableError:
    case QNetworkReply::UnknownServerError:
    case QNetworkReply::ProtocolInvalidOperationError:
        return true;
    default:
        return false;
    }
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
    if (!network)
        network = new QNetworkAccessManager(this);
    const auto end = std::chrono::milliseconds(std::llround(longestCheck * kMillisecondsPerSecond));
    fetch(versionURL, kMostRedirects, QDeadlineTimer(end), silent);
}

void UpdateChecker::fetch(const QUrl &url, int redirects, QDeadlineTimer end, bool silent)
{
    QNetworkRequest request(url);
    request.setTransferTimeout(static_cast<int>(std::lround(timeout * kMillisecondsPerSecond)));
    // Qt's own way drops the body of a redirect that leads nowhere, which may hold the record.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    QNetworkReply *reply = network->get(request);
    // More than that is not even received.
    reply->setReadBufferSize(kLargestBody + 1);
    connect(reply, &QNetworkReply::readyRead, reply, [reply] {
        if (reply->bytesAvailable() > kLargestBody)
            reply->abort();
    });
    // The transfer timeout does not count lines of a header. Those wait in the socket while the buffer above is full.
    QTimer::singleShot(std::chrono::milliseconds(end.remainingTime()), reply, [reply] { reply->abort(); });
    connect(reply, &QNetworkReply::finished, this, [this, reply, redirects, end, silent] {
        reply->deleteLater();
        if (!isComplete(*reply)) {
            leaveNetwork(reply->manager());
            return;
        }
        const QVariant target = reply->attribute(QNetworkRequest::RedirectionTargetAttribute);
        // Qt names a target whenever the status asks for one.
        if (!target.isValid() || reply->rawHeader("Location").isEmpty()) {
            received(reply->readAll(), silent);
            return;
        }
        const QUrl next = reply->url().resolved(target.toUrl());
        if (redirects > 0 && mayRedirect(reply->url(), next))
            fetch(next, redirects - 1, end, silent);
    });
}

// What a failed check left behind in `used` is nothing to later ones. Qt may wait for it some seconds, so it does that
// on another thread.
void UpdateChecker::leaveNetwork(QNetworkAccessManager *used)
{
    if (used != network)
        return;
    network = nullptr;
    QTimer::singleShot(0, used, [used] {
        // Other checks that are under way in it go on.
        const auto replies = used->findChildren<QNetworkReply *>();
        if (std::any_of(replies.begin(), replies.end(), [](const auto *reply) { return reply->isRunning(); }))
            return;
        used->setParent(nullptr);
        QThread *const thread = QThread::create([used] { delete used; });
        used->moveToThread(thread);
        connect(thread, &QThread::finished, thread, &QObject::deleteLater);
        thread->start();
    });
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
