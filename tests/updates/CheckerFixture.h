// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/LoopbackServer.h"
#include "tests/support/VirtualPlatform.h"
#include "updates/BoundedFetch.h"
#include "updates/UpdateChecker.h"

#include <QTcpSocket>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

inline constexpr int kPatience = 20'000; // milliseconds
inline const QByteArray kRecord =
    R"({"version": "2.0", "url": "https://example.com/get", "notes": "Faster.\nBetter.", "other": 1})";

inline QByteArray recordOf(const QByteArray &version)
{
    return R"({"version": ")" + version + R"(", "url": "https://example.com/get"})";
}

// An update checker of version 1.9, and a web server that answers it with a record.
struct CheckerFixture {
    explicit CheckerFixture(const QByteArray &body = kRecord)
    {
        server.onRequest = [body](QTcpSocket &socket, const QByteArray &) {
            LoopbackServer::reply(socket, "200 OK", body);
        };
    }

    UpdateChecker &checker()
    {
        if (!made)
            made.emplace(virtualPlatform.platform, server.url(), u"1.9"_s);
        return *made;
    }

    bool isUnderWay() const { return made && !made->findChildren<BoundedFetch *>().isEmpty(); }

    // Waits until every request has succeeded or failed, and runs the work that is queued then.
    void finish()
    {
        QVERIFY(QTest::qWaitFor([this] { return !isUnderWay(); }, kPatience));
        virtualPlatform.mainQueue.runPending();
    }

    // Makes a check and returns the message texts of all alerts that were shown.
    QStringList check(WhenUpToDate whenUpToDate = WhenUpToDate::SaySo)
    {
        checker().check(whenUpToDate);
        finish();
        return messages();
    }

    QStringList messages() const
    {
        QStringList texts;
        for (const Alert &alert : alerts.shown)
            texts.append(alert.messageText);
        return texts;
    }

    VirtualPlatform virtualPlatform;
    VirtualAlerts &alerts = virtualPlatform.alerts;
    LoopbackServer server;
    std::optional<UpdateChecker> made;
};

inline const QStringList kUpdate = {u"Parklet update available"_s};
inline const QStringList kUpToDate = {u"Parklet is up to date"_s};
