// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QString>
#include <QTimer>

#include <chrono>
#include <functional>
#include <optional>
#include <vector>

class QDBusMessage;

// The desktop's thumbnailer service (org.freedesktop.thumbnails.Thumbnailer1) on the session bus. It makes thumbnails
// of kinds of files that this program does not know, and writes them into the shared thumbnail cache. Lives on one
// thread with an event loop and never blocks it.
class DesktopThumbnailer : public QObject {
    Q_OBJECT

public:
    // Called exactly once, on this object's thread. `made` tells whether the cache now holds a thumbnail, according to
    // the service.
    using Done = std::function<void(bool made)>;

    // A request fails when the service has not reported any progress for so long.
    static constexpr std::chrono::milliseconds kLongestSilence{10'000};

    explicit DesktopThumbnailer(const QDBusConnection &bus, std::chrono::milliseconds longestSilence = kLongestSilence);
    ~DesktopThumbnailer() override;

    // Asks for an entry in the size folder `flavor` of the cache for the file `uri`. `mimeTypes` has all names of the
    // file's type. When there is no such service, or it does not know the type, `done` is called at once with false.
    void request(const QString &uri, const QStringList &mimeTypes, const QString &flavor, Done done);

private slots:
    void serviceReady(uint handle, const QStringList &uris);
    void serviceFailed(uint handle, const QStringList &uris, int code, const QString &message);
    void serviceFinished(uint handle);
    void serviceOwnerChanged(const QString &name, const QString &oldOwner, const QString &newOwner);

private:
    enum class Service { Unknown, Asked, Known, Absent };

    struct Request {
        quint64 id;
        QString uri;
        QStringList mimeTypes;
        QString flavor;
        Done done;
        std::optional<uint> handle; // set once the service has accepted the request
    };

    void askForSupportedTypes();
    void call(const QString &method, const QVariantList &arguments,
              const std::function<void(const QDBusMessage &reply)> &handler);
    // Those of the types that the service supports.
    QStringList supported(const QStringList &mimeTypes) const;
    void queueWaiting();
    void queue(Request &request);
    void queued(quint64 id, const QDBusMessage &reply);
    void finish(const std::function<bool(const Request &)> &matches, bool made);
    void giveUp();

    QDBusConnection bus;
    Service service = Service::Unknown;
    QSet<QString> supportedTypes; // of local files
    std::vector<Request> requests;
    QSet<uint> finishedEarly; // handles whose end arrived before the reply that names them
    quint64 lastId = 0;
    QTimer silence;
};
