// SPDX-License-Identifier: MIT
#include "updates/UpdateChecker.h"

#include "platform/Platform.h"
#include "updates/VersionComparison.h"
#include "updates/VersionRecord.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>

#include <cmath>
#include <compare>

namespace {

constexpr qint64 kLargestBody = 1 << 20; // bytes; a version record has a few hundred
constexpr int kMostRedirects = 20;
constexpr double kMillisecondsPerSecond = 1000.0;

// Whether the reply arrived whole. A status such as 404 or 500 is an error to Qt, but its body is there all the same.
bool isComplete(const QNetworkReply &reply)
{
    switch (reply.error()) {
    case QNetworkReply::NoError:
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
    QNetworkRequest request(versionURL);
    request.setTransferTimeout(static_cast<int>(std::lround(timeout * kMillisecondsPerSecond)));
    request.setMaximumRedirectsAllowed(kMostRedirects);
    QNetworkReply *reply = network->get(request);
    // More than that is not even received.
    reply->setReadBufferSize(kLargestBody + 1);
    connect(reply, &QNetworkReply::readyRead, reply, [reply] {
        if (reply->bytesAvailable() > kLargestBody)
            reply->abort();
    });
    connect(reply, &QNetworkReply::finished, this, [this, reply, silent] {
        reply->deleteLater();
        if (isComplete(*reply))
            received(reply->readAll(), silent);
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
