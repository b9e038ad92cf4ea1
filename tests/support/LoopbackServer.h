// SPDX-License-Identifier: MIT
#pragma once

#include <QSslCertificate>
#include <QSslKey>
#include <QTcpServer>
#include <QUrl>

#include <functional>

using namespace Qt::StringLiterals;

class QTcpSocket;

// A web server on 127.0.0.1 whose answers the test decides.
class LoopbackServer : public QTcpServer {
public:
    LoopbackServer();

    // Serves https from now on.
    void setCertificate(const QSslCertificate &certificate, const QSslKey &key);

    QUrl url(const QString &path = u"/version.json"_s) const;

    // Sends a complete answer and closes the connection.
    static void reply(QTcpSocket &socket, const QByteArray &status, const QByteArray &body,
                      const QByteArray &headers = {});

    // Called for each request with its first line ("GET /version.json HTTP/1.1"). The socket exists until it is closed.
    std::function<void(QTcpSocket &socket, const QByteArray &requestLine)> onRequest;

    QList<QByteArray> requestLines;
    QByteArray lastHeader; // the lines that followed the first one

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    QSslCertificate certificate;
    QSslKey key;
};
