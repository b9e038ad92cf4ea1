// SPDX-License-Identifier: MIT
#include "tests/support/LoopbackServer.h"

#include <QSslSocket>

using namespace Qt::StringLiterals;

LoopbackServer::LoopbackServer()
{
    if (!listen(QHostAddress::LocalHost))
        qFatal("No port is free on the loopback interface.");
}

void LoopbackServer::setCertificate(const QSslCertificate &ownCertificate, const QSslKey &ownKey)
{
    certificate = ownCertificate;
    key = ownKey;
}

QUrl LoopbackServer::url(const QString &path) const
{
    const QString scheme = certificate.isNull() ? u"http"_s : u"https"_s;
    return QUrl(u"%1://127.0.0.1:%2%3"_s.arg(scheme).arg(serverPort()).arg(path));
}

void LoopbackServer::reply(QTcpSocket &socket, const QByteArray &status, const QByteArray &body,
                           const QByteArray &headers)
{
    socket.write("HTTP/1.1 " + status + "\r\nContent-Length: " + QByteArray::number(body.size()) +
                 "\r\nConnection: close\r\n" + headers + "\r\n" + body);
    socket.disconnectFromHost();
}

void LoopbackServer::incomingConnection(qintptr descriptor)
{
    auto *const socket = new QSslSocket(this);
    socket->setSocketDescriptor(descriptor);
    connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
        if (socket->property("answered").toBool() || !socket->peek(65'536).contains("\r\n\r\n"))
            return;
        socket->setProperty("answered", true);
        const QByteArray line = socket->readLine().trimmed();
        lastHeader = socket->readAll();
        requestLines.append(line);
        if (onRequest)
            onRequest(*socket, line);
    });
    if (certificate.isNull())
        return;
    socket->setLocalCertificate(certificate);
    socket->setPrivateKey(key);
    socket->startServerEncryption();
}
