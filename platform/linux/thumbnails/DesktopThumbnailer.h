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

// The desktop's thumbnailer service (org.freedesktop.thumbnails.Thumbnailer1) on the session bus, which knows kinds of
// files that this program does not. Its pictures go into the shared thumbnail cache. Lives on one thread with an event
// loop and blocks none.
class DesktopThumbnailer : public QObject {
    Q_OBJECT

public:
    // Called exactly once, on this object's thread: whether the service says that the cache now holds a picture.
    using Done = std::function<void(bool made)>;

    // How long the service may go without a sign of progress before what it was asked for is given up.
    static constexpr std::chrono::milliseconds kLongestSilence{10'000};

    explicit DesktopThumbnailer(const QDBusConnection &bus, std::chrono::milliseconds longestSilence = kLongestSilence);
    ~DesktopThumbnailer() override;

    // Asks for an entry of the cache's class `flavor` for the file `uri`, whose type has all the names `mimeTypes`.
    // Done at once, with false, when there is no such service or it does not know files of that type.
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
        std::optional<uint> handle; // once the service has taken it
    };

    void askForSupportedTypes();
    void call(const QString &method, const QVariantList &arguments,
              const std::function<void(const QDBusMessage &reply)> &handler);
    // Those of the names that the service knows.
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
    QSet<uint> finishedEarly; // handles that were finished before the service had answered with them
    quint64 lastId = 0;
    QTimer silence;
};
