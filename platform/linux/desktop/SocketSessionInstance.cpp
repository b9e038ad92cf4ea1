// SPDX-License-Identifier: MIT
#include "platform/linux/desktop/SocketSessionInstance.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QThread>
#include <QTimer>

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr mode_t kPrivateFolder = 0700;
constexpr mode_t kPrivateFile = 0600;
constexpr mode_t kOthers = 0077;
constexpr char kActivate[] = "activate\n";
constexpr qint64 kLongestRequest = 64; // bytes, and some to spare

// How long a later start waits for the running instance, and the pause between two attempts.
constexpr int kAnswerTime = 2500;        // milliseconds
constexpr unsigned long kRetryTime = 50; // milliseconds

bool isPrivate(const QByteArray &folder)
{
    struct stat status {};
    return ::lstat(folder.constData(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::geteuid() &&
           (status.st_mode & kOthers) == 0;
}

} // namespace

QString SocketSessionInstance::privateFolder()
{
    // Without XDG_RUNTIME_DIR Qt would make a folder of its own and print a warning.
    const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
    if (runtime.startsWith('/') && isPrivate(runtime) && ::access(runtime.constData(), W_OK) == 0)
        return QFile::decodeName(runtime);
    const QString temporary = QDir::tempPath() + QStringLiteral("/parklet-") + QString::number(::geteuid());
    const QByteArray folder = QFile::encodeName(temporary);
    if (::mkdir(folder.constData(), kPrivateFolder) != 0 && errno != EEXIST)
        return {};
    return isPrivate(folder) ? temporary : QString();
}

SocketSessionInstance::SocketSessionInstance(const QString &folder, const QString &name)
    : path(folder.isEmpty() ? QString() : folder + QLatin1Char('/') + name)
{
}

SocketSessionInstance::~SocketSessionInstance()
{
    server.close();
    if (lock >= 0)
        ::close(lock);
}

bool SocketSessionInstance::claim()
{
    // There is no place for a lock. A second shelf is better than none.
    if (path.isEmpty())
        return true;
    lock = ::open(QFile::encodeName(path + QStringLiteral(".lock")).constData(),
                  O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, kPrivateFile);
    if (lock < 0)
        return true;
    if (::flock(lock, LOCK_EX | LOCK_NB) == 0) {
        listen();
        return true;
    }
    ::close(lock);
    lock = -1;
    unanswered = !askOther();
    return false;
}

void SocketSessionInstance::listen()
{
    const QString socket = path + QStringLiteral(".socket");
    // We hold the lock, so no process listens on an old socket.
    QLocalServer::removeServer(socket);
    server.setSocketOptions(QLocalServer::UserAccessOption);
    QObject::connect(&server, &QLocalServer::newConnection, &server, [this] {
        while (QLocalSocket *client = server.nextPendingConnection()) {
            QObject::connect(client, &QLocalSocket::disconnected, client, &QObject::deleteLater);
            client->setReadBufferSize(kLongestRequest);
            QTimer::singleShot(kAnswerTime, client, [client] { client->abort(); });
            const auto answer = [this, client] {
                if (!client->canReadLine() && client->bytesAvailable() < kLongestRequest)
                    return;
                if (client->readLine(kLongestRequest) != kActivate) {
                    client->abort();
                    return;
                }
                client->write("ok\n");
                client->disconnectFromServer();
                if (onActivate)
                    onActivate();
            };
            QObject::connect(client, &QLocalSocket::readyRead, client, answer);
            answer();
        }
    });
    server.listen(socket);
}

// Whether the other one has answered.
bool SocketSessionInstance::askOther() const
{
    QElapsedTimer clock;
    clock.start();
    const auto left = [&clock] { return static_cast<int>(std::max<qint64>(kAnswerTime - clock.elapsed(), 0)); };
    while (left() > 0) {
        QLocalSocket socket;
        socket.connectToServer(path + QStringLiteral(".socket"));
        // The other instance takes the lock a moment before it listens.
        if (!socket.waitForConnected(left())) {
            QThread::msleep(kRetryTime);
            continue;
        }
        socket.write(kActivate);
        socket.waitForBytesWritten(left());
        return socket.bytesAvailable() > 0 || socket.waitForReadyRead(left());
    }
    return false;
}
