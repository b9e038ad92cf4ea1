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

// One GET by HTTP/1.1. Everything about it has an end: its time, the time without data, its header and its body. Qt's
// own reads lines of a header without an end, and cannot be stopped meanwhile.
class BoundedFetch : public QObject {
    Q_OBJECT

public:
    struct Reply {
        int status = 0;
        QByteArray location; // where it redirects to
        QByteArray body;
    };
    using Done = std::function<void(const std::optional<Reply> &)>;

    static constexpr qsizetype kLargestHeader = 65'536; // bytes
    static constexpr qsizetype kLargestBody = 1 << 20;

    // Begins in a later turn of the main loop, calls `done` once, with nothing when no whole reply has come, and
    // deletes itself then. Calls nothing when it is deleted before. `silence` is the longest time without data.
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
    bool isForProxy = false; // the request goes to a proxy, which is told the whole address
    QByteArray header;
    bool hasHeader = false;
    int announcements = 0;
    std::optional<qint64> length; // of the body; nothing when it ends with the connection
    bool isChunked = false;
    QByteArray chunks;    // not looked at yet
    qint64 chunkLeft = 0; // bytes of the current chunk that are to come
    Reply reply;
};
