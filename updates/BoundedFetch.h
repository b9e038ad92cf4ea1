// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QObject>
#include <QTimer>
#include <QUrl>

#include <chrono>
#include <functional>
#include <optional>

class QSslSocket;

// One GET request of HTTP/1.1 with limits for its time, its time without data, its header and its body. Qt's own
// network access reads an endless header without a limit, and cannot be stopped meanwhile.
class BoundedFetch : public QObject {
    Q_OBJECT

public:
    struct Reply {
        int status = 0;
        QByteArray location; // the target of a redirect
        QByteArray body;
    };
    using Done = std::function<void(const std::optional<Reply> &)>;

    static constexpr qsizetype kLargestHeader = 65'536; // bytes
    static constexpr qsizetype kLargestBody = 1 << 20;

    // Begins in a later turn of the main loop. Calls `done` once, with nothing unless the whole reply has arrived, and
    // then deletes itself. Does not call it when it is deleted before. `silence` is the longest time without data.
    BoundedFetch(const QUrl &url, std::chrono::milliseconds silence, QDeadlineTimer end, Done done, QObject *parent);

private:
    void begin();
    void sendRequest();
    void read();
    void readHeader();
    void readBody(const QByteArray &bytes);
    void readChunks();
    void disconnected();
    void finish(const std::optional<Reply> &whole);
    void fail() { finish({}); }

    const QUrl url;
    Done done;
    QSslSocket *socket;
    QTimer silence;
    bool isForProxy = false; // the request goes to a proxy, which needs the whole address
    QByteArray header;
    bool hasHeader = false;
    int announcements = 0;
    std::optional<qint64> length; // of the body; empty when the end of the connection ends it
    bool isChunked = false;
    QByteArray chunks;    // not yet read
    qint64 chunkLeft = 0; // the missing bytes of the current chunk
    Reply reply;
};
