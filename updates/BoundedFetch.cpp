// SPDX-License-Identifier: MIT
#include "updates/BoundedFetch.h"

#include <QNetworkProxy>
#include <QSslSocket>

#include <algorithm>
#include <utility>

namespace {

constexpr qint64 kReadAhead = 65'536; // bytes; the buffer of the socket
constexpr qint64 kPiece = 16'384;
constexpr qsizetype kLongestChunkLine = 1'024;
constexpr quint16 kWebPort = 80;
constexpr quint16 kSafeWebPort = 443;
constexpr int kFirstFinalStatus = 200; // a smaller one announces another reply
constexpr int kMostAnnouncements = 8;
constexpr int kNoContent = 204;
constexpr int kNotModified = 304;
const QByteArray kEndOfHeader = "\r\n\r\n";

bool isSafe(const QUrl &url)
{
    return url.scheme() == QLatin1String("https");
}

quint16 portOf(const QUrl &url)
{
    return static_cast<quint16>(url.port(isSafe(url) ? kSafeWebPort : kWebPort));
}

} // namespace

BoundedFetch::BoundedFetch(const QUrl &address, std::chrono::milliseconds longestSilence, QDeadlineTimer end,
                           Done callback, QObject *parent)
    : QObject(parent)
    , url(address)
    , done(std::move(callback))
    , socket(new QSslSocket(this))
{
    silence.setSingleShot(true);
    silence.setInterval(longestSilence);
    connect(&silence, &QTimer::timeout, this, &BoundedFetch::fail);
    QTimer::singleShot(std::chrono::milliseconds(end.remainingTime()), this, &BoundedFetch::fail);
    QTimer::singleShot(0, this, &BoundedFetch::begin);
    // The server keeps what does not fit.
    socket->setReadBufferSize(kReadAhead);
    connect(socket, &QSslSocket::connected, this, [this] {
        if (!isSafe(url))
            sendRequest();
    });
    connect(socket, &QSslSocket::encrypted, this, &BoundedFetch::sendRequest);
    connect(socket, &QSslSocket::readyRead, this, &BoundedFetch::read);
    connect(socket, &QSslSocket::disconnected, this, &BoundedFetch::disconnected);
    connect(socket, &QSslSocket::errorOccurred, this, [this](QAbstractSocket::SocketError error) {
        if (error != QAbstractSocket::RemoteHostClosedError)
            fail();
    });
}

void BoundedFetch::begin()
{
    if (!done)
        return;
    silence.start();
    QNetworkProxy proxy = QNetworkProxyFactory::proxyForQuery(QNetworkProxyQuery(url)).constFirst();
    const bool isWebProxy = proxy.type() == QNetworkProxy::HttpProxy || proxy.type() == QNetworkProxy::HttpCachingProxy;
    isForProxy = isWebProxy && !isSafe(url);
    if (isForProxy) {
        socket->setProxy(QNetworkProxy::NoProxy);
        socket->connectToHost(proxy.hostName(), proxy.port());
        return;
    }
    if (isWebProxy)
        proxy.setType(QNetworkProxy::HttpProxy);
    socket->setProxy(proxy);
    if (isSafe(url))
        socket->connectToHostEncrypted(url.host(), portOf(url));
    else
        socket->connectToHost(url.host(), portOf(url));
}

void BoundedFetch::sendRequest()
{
    const QUrl whole = url.adjusted(QUrl::RemoveUserInfo | QUrl::RemoveFragment);
    QByteArray target =
        whole.toEncoded(isForProxy ? QUrl::FormattingOptions(QUrl::None) : QUrl::RemoveScheme | QUrl::RemoveAuthority);
    if (!isForProxy && !target.startsWith('/'))
        target.prepend('/');
    QByteArray host = url.host(QUrl::FullyEncoded).toLatin1();
    if (host.contains(':'))
        host = '[' + host + ']';
    if (url.port() > 0)
        host += ':' + QByteArray::number(url.port());
    socket->write("GET " + target + " HTTP/1.1\r\nHost: " + host +
                  "\r\nUser-Agent: Parklet\r\nAccept: */*\r\nConnection: close\r\n\r\n");
}

void BoundedFetch::read()
{
    silence.start();
    while (done && socket->bytesAvailable() > 0) {
        const QByteArray bytes = socket->read(kPiece);
        if (bytes.isEmpty())
            return;
        if (hasHeader) {
            readBody(bytes);
        } else {
            header += bytes;
            readHeader();
        }
    }
}

void BoundedFetch::readHeader()
{
    const qsizetype end = header.indexOf(kEndOfHeader);
    if (end > kLargestHeader || (end < 0 && header.size() > kLargestHeader)) {
        fail();
        return;
    }
    if (end < 0)
        return;
    const QList<QByteArray> lines = header.left(end).split('\n');
    const QByteArray rest = header.mid(end + kEndOfHeader.size());
    const QList<QByteArray> words = lines.constFirst().trimmed().split(' ');
    bool isNumber = false;
    reply.status = words.size() < 2 ? 0 : words.at(1).toInt(&isNumber);
    if (!words.constFirst().startsWith("HTTP/1.") || !isNumber) {
        fail();
        return;
    }
    header = rest;
    if (reply.status < kFirstFinalStatus) {
        if (++announcements > kMostAnnouncements)
            fail();
        else
            readHeader();
        return;
    }
    for (const QByteArray &line : lines.mid(1)) {
        const qsizetype colon = line.indexOf(':');
        const QByteArray name = line.left(colon).trimmed().toLower();
        const QByteArray value = line.mid(colon + 1).trimmed();
        if (name == "location")
            reply.location = value;
        else if (name == "transfer-encoding")
            isChunked = value.toLower().endsWith("chunked");
        else if (name == "content-length")
            length = std::max<qint64>(value.toLongLong(), 0);
    }
    if (isChunked)
        length.reset();
    if (reply.status == kNoContent || reply.status == kNotModified)
        length = 0;
    hasHeader = true;
    header.clear();
    if (length > kLargestBody)
        fail();
    else
        readBody(rest);
}

void BoundedFetch::readBody(const QByteArray &bytes)
{
    if (isChunked) {
        chunks += bytes;
        readChunks();
    } else {
        reply.body += bytes;
        if (length && reply.body.size() >= *length) {
            reply.body.truncate(static_cast<qsizetype>(*length));
            finish(reply);
        }
    }
    if (done && reply.body.size() > kLargestBody)
        fail();
}

// Each chunk is preceded by a line with its size in hexadecimal digits, and followed by an empty line.
void BoundedFetch::readChunks()
{
    while (done && !chunks.isEmpty()) {
        if (chunkLeft > 0) {
            const auto count = static_cast<qsizetype>(std::min<qint64>(chunkLeft, chunks.size()));
            reply.body += chunks.left(count);
            chunks.remove(0, count);
            chunkLeft -= count;
            continue;
        }
        const qsizetype end = chunks.indexOf('\n');
        if (end > kLongestChunkLine || (end < 0 && chunks.size() > kLongestChunkLine)) {
            fail();
            return;
        }
        if (end < 0)
            return;
        const QByteArray line = chunks.left(end).trimmed();
        chunks.remove(0, end + 1);
        if (line.isEmpty())
            continue;
        const qsizetype extension = line.indexOf(';');
        bool isNumber = false;
        chunkLeft = (extension < 0 ? line : line.left(extension)).trimmed().toLongLong(&isNumber, 16);
        if (!isNumber || chunkLeft < 0 || chunkLeft > kLargestBody)
            fail();
        else if (chunkLeft == 0)
            finish(reply);
    }
}

void BoundedFetch::disconnected()
{
    read();
    if (!done)
        return;
    // Any other reply without a stated end was cut short.
    if (hasHeader && !length && !isChunked)
        finish(reply);
    else
        fail();
}

void BoundedFetch::finish(const std::optional<Reply> &whole)
{
    const Done call = std::exchange(done, nullptr);
    if (!call)
        return;
    silence.stop();
    socket->abort();
    deleteLater();
    call(whole);
}
