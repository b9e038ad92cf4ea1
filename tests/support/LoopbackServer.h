// SPDX-License-Identifier: MIT
#pragma once

#include <QSslCertificate>
#include <QSslKey>
#include <QTcpServer>
#include <QUrl>

#include <functional>

using namespace Qt::StringLiterals;

class QTcpSocket;

// A web server on 127.0.0.1 that does what the test says with each request.
class LoopbackServer : public QTcpServer {
public:
    LoopbackServer();

    // Serves https from here on.
    void setCertificate(const QSslCertificate &certificate, const QSslKey &key);

    QUrl url(const QString &path = u"/version.json"_s) const;

    // Answers a request whole and closes.
    static void reply(QTcpSocket &socket, const QByteArray &status, const QByteArray &body,
                      const QByteArray &headers = {});

    // Called for each request, with its first line ("GET /version.json HTTP/1.1"). The socket lives until it is closed.
    std::function<void(QTcpSocket &socket, const QByteArray &requestLine)> onRequest;

    QList<QByteArray> requestLines;
    QByteArray lastHeader; // the lines that followed the first one

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    QSslCertificate certificate;
    QSslKey key;
};
