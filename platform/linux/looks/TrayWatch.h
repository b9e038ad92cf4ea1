// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/x11/XcbConnection.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>

#include <functional>
#include <memory>

// Reports when the session has a tray: a host of status notifier items on the session bus, or the owner of the X tray
// selection. Qt chooses between the two when it is first asked, so do not ask it before.
class TrayWatch : public QObject {
    Q_OBJECT

public:
    // Calls `onAppear` once, in a later turn of the main loop. `xcb` is null where there is no X server.
    TrayWatch(std::shared_ptr<XcbConnection> xcb, std::function<void()> onAppear);

private slots:
    // Checks for both kinds of tray.
    void check();

private:
    void watchBus();
    void watchServer();
    void finish(bool hasNotifierHost);
    bool hasTrayManager() const;

    std::shared_ptr<XcbConnection> connection;
    std::function<void()> appeared;
    QDBusConnection bus;
    QDBusServiceWatcher watcher;
    xcb_atom_t selection = XCB_ATOM_NONE;
    XcbConnection::Subscription subscription;
};
