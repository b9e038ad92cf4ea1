// SPDX-License-Identifier: MIT
#pragma once

#include "tests/app/AppFixture.h"
#include "tests/support/LoopbackServer.h"
#include "updates/BoundedFetch.h"

#include <QCoreApplication>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

// The names in the log of the services that a launch uses.
inline const QString kIconCall = u"makeStatusItem"_s;
inline const QString kTrustCall = u"isProcessTrusted"_s;
inline const QString kDraggedCall = u"addMonitor 64"_s;
inline const QString kUpCall = u"addMonitor 4"_s;
inline const QString kStreamCall = u"openStream"_s;
inline const QString kLoginCall = u"isLoginItemEnabled"_s;
inline const QString kSynchronizeCall = u"synchronize"_s;
inline const QString kAlertCall = u"alert"_s;

// The delegate, not yet launched, with the questions of its launch.
struct LaunchFixture : AppFixture {
    VirtualAlerts &alerts = virtualPlatform.alerts;
    VirtualAccessibilityTrust &trust = virtualPlatform.accessibilityTrust;
    VirtualMenuBar &menuBar = virtualPlatform.menuBar;
    VirtualEventMonitors &monitors = virtualPlatform.eventMonitors;

    // Runs `work` the first time that the service is called.
    void at(const QString &wanted, std::function<void()> work)
    {
        virtualPlatform.log.onCall = [wanted, work = std::move(work), done = false](const QString &call) mutable {
            if (done || call != wanted)
                return;
            done = true;
            work();
        };
    }

    // Launches in a main loop, in which the user quits while the alert of that number is shown. True when quitting has
    // ended the loop.
    bool launchAndQuitAtAlert(qsizetype number)
    {
        constexpr int kNotQuit = 1;
        alerts.whileShown = [this, number] {
            if (alerts.shown.size() == number)
                QCoreApplication::quit();
        };
        QTimer::singleShot(0, &shelf, [this] { launch(); });
        QTimer::singleShot(10'000, &shelf, [] { QCoreApplication::exit(kNotQuit); });
        return QCoreApplication::exec() == 0;
    }
};

// An application whose version record is on a server of the test.
struct UpdateFixture : LaunchFixture {
    explicit UpdateFixture(const QByteArray &version)
    {
        shared.versionURL = server.url();
        server.onRequest = [version](QTcpSocket &socket, const QByteArray &) {
            LoopbackServer::reply(socket, "200 OK",
                                  R"({"version": ")" + version + R"(", "url": "https://example.com/get"})");
        };
    }

    // Waits until every request is finished, and lets the program react.
    void finish()
    {
        [this] { QTRY_VERIFY_WITH_TIMEOUT(shared.updateChecker().findChildren<BoundedFetch *>().isEmpty(), 20'000); }();
        queue.runPending();
    }

    LoopbackServer server;
};
