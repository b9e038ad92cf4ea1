// SPDX-License-Identifier: MIT
#include "platform/linux/thumbnails/DesktopThumbnailer.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

#include <algorithm>

namespace {

const QString kService = QStringLiteral("org.freedesktop.thumbnails.Thumbnailer1");
const QString kPath = QStringLiteral("/org/freedesktop/thumbnails/Thumbnailer1");
const QString kInterface = kService;
const QString kBus = QStringLiteral("org.freedesktop.DBus");
const QString kScheme = QStringLiteral("file");
const QString kScheduler = QStringLiteral("foreground");

} // namespace

DesktopThumbnailer::DesktopThumbnailer(const QDBusConnection &connection, std::chrono::milliseconds longestSilence)
    : bus(connection)
    , silence(this)
{
    silence.setSingleShot(true);
    silence.setInterval(longestSilence);
    connect(&silence, &QTimer::timeout, this, &DesktopThumbnailer::giveUp);
    if (!bus.isConnected()) {
        service = Service::Absent;
        return;
    }
    bus.connect(QString(), kPath, kInterface, QStringLiteral("Ready"), this, SLOT(serviceReady(uint, QStringList)));
    bus.connect(QString(), kPath, kInterface, QStringLiteral("Error"), this,
                SLOT(serviceFailed(uint, QStringList, int, QString)));
    bus.connect(QString(), kPath, kInterface, QStringLiteral("Finished"), this, SLOT(serviceFinished(uint)));
    bus.connect(kBus, QStringLiteral("/org/freedesktop/DBus"), kBus, QStringLiteral("NameOwnerChanged"), {kService},
                QString(), this, SLOT(serviceOwnerChanged(QString, QString, QString)));
}

DesktopThumbnailer::~DesktopThumbnailer()
{
    finish([](const Request &) { return true; }, false);
}

void DesktopThumbnailer::request(const QString &uri, const QStringList &mimeTypes, const QString &flavor, Done done)
{
    if (service == Service::Absent || (service == Service::Known && supported(mimeTypes).isEmpty())) {
        done(false);
        return;
    }
    requests.push_back({++lastId, uri, mimeTypes, flavor, std::move(done), {}});
    if (requests.size() == 1)
        silence.start();
    if (service == Service::Unknown)
        askForSupportedTypes();
    else if (service == Service::Known)
        queue(requests.back());
}

void DesktopThumbnailer::call(const QString &method, const QVariantList &arguments,
                              const std::function<void(const QDBusMessage &reply)> &handler)
{
    QDBusMessage message = QDBusMessage::createMethodCall(kService, kPath, kInterface, method);
    message.setArguments(arguments);
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [handler](QDBusPendingCallWatcher *call) {
        call->deleteLater();
        handler(call->reply());
    });
}

void DesktopThumbnailer::askForSupportedTypes()
{
    service = Service::Asked;
    call(QStringLiteral("GetSupported"), {}, [this](const QDBusMessage &reply) {
        if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().size() < 2) {
            service = Service::Absent;
            finish([](const Request &) { return true; }, false);
            return;
        }
        const QStringList schemes = reply.arguments().at(0).toStringList();
        const QStringList types = reply.arguments().at(1).toStringList();
        supportedTypes.clear();
        for (qsizetype i = 0; i < std::min(schemes.size(), types.size()); ++i) {
            if (schemes.at(i) == kScheme)
                supportedTypes.insert(types.at(i));
        }
        service = Service::Known;
        queueWaiting();
    });
}

QStringList DesktopThumbnailer::supported(const QStringList &mimeTypes) const
{
    QStringList known = mimeTypes;
    known.removeIf([this](const QString &type) { return !supportedTypes.contains(type); });
    return known;
}

void DesktopThumbnailer::queueWaiting()
{
    finish([this](const Request &request) { return supported(request.mimeTypes).isEmpty(); }, false);
    for (Request &request : requests)
        queue(request);
}

void DesktopThumbnailer::queue(Request &request)
{
    const QVariantList arguments = {QStringList{request.uri}, supported(request.mimeTypes).first(1), request.flavor,
                                    kScheduler, 0u};
    call(QStringLiteral("Queue"), arguments, [this, id = request.id](const QDBusMessage &reply) { queued(id, reply); });
}

void DesktopThumbnailer::queued(quint64 id, const QDBusMessage &reply)
{
    const auto isIt = [id](const Request &request) { return request.id == id; };
    const auto request = std::find_if(requests.begin(), requests.end(), isIt);
    const bool taken = reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty();
    const uint handle = taken ? reply.arguments().at(0).toUInt() : 0;
    const bool over = taken && finishedEarly.remove(handle);
    if (request == requests.end()) {
        // The request has failed meanwhile, so the service may stop.
        if (taken && !over)
            call(QStringLiteral("Dequeue"), {handle}, [](const QDBusMessage &) {});
        return;
    }
    if (!taken || over)
        finish(isIt, false);
    else
        request->handle = handle;
}

void DesktopThumbnailer::serviceReady(uint handle, const QStringList &uris)
{
    // A signal can arrive before the reply with its handle. Then the file identifies the request.
    finish(
        [&](const Request &request) { return uris.contains(request.uri) && request.handle.value_or(handle) == handle; },
        true);
}

void DesktopThumbnailer::serviceFailed(uint handle, const QStringList &uris, int /*code*/, const QString & /*message*/)
{
    finish(
        [&](const Request &request) { return uris.contains(request.uri) && request.handle.value_or(handle) == handle; },
        false);
}

void DesktopThumbnailer::serviceFinished(uint handle)
{
    const bool awaitsAnswer =
        std::any_of(requests.begin(), requests.end(), [](const Request &request) { return !request.handle; });
    if (awaitsAnswer)
        finishedEarly.insert(handle);
    else
        finishedEarly.clear();
    finish([handle](const Request &request) { return request.handle == handle; }, false);
}

void DesktopThumbnailer::serviceOwnerChanged(const QString & /*name*/, const QString &oldOwner,
                                             const QString & /*newOwner*/)
{
    // An idle service leaves the bus, and the next call starts it again. A service that appears for the first time may
    // have been started by the question for its types.
    if (service == Service::Asked && oldOwner.isEmpty())
        return;
    if (!oldOwner.isEmpty())
        finish([](const Request &) { return true; }, false);
    finishedEarly.clear();
    service = Service::Unknown;
}

void DesktopThumbnailer::finish(const std::function<bool(const Request &)> &matches, bool made)
{
    std::vector<Done> finished;
    const auto rest = std::stable_partition(requests.begin(), requests.end(),
                                            [&](const Request &request) { return !matches(request); });
    std::transform(rest, requests.end(), std::back_inserter(finished),
                   [](Request &request) { return std::move(request.done); });
    requests.erase(rest, requests.end());
    if (requests.empty())
        silence.stop();
    else if (!finished.empty())
        silence.start();
    for (const Done &done : finished)
        done(made);
}

void DesktopThumbnailer::giveUp()
{
    for (const Request &request : requests) {
        if (request.handle)
            call(QStringLiteral("Dequeue"), {*request.handle}, [](const QDBusMessage &) {});
    }
    if (service == Service::Asked)
        service = Service::Unknown;
    finish([](const Request &) { return true; }, false);
}
