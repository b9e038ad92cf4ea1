// SPDX-License-Identifier: MIT
#include "platform/linux/looks/TrayWatch.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <xcb/xfixes.h>

#include <utility>

namespace {

const QString kWatcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString kWatcherPath = QStringLiteral("/StatusNotifierWatcher");
const QString kProperties = QStringLiteral("org.freedesktop.DBus.Properties");

// A watcher that does not answer in this time counts as one without a host.
constexpr int kAnswerTime = 2000; // milliseconds

} // namespace

TrayWatch::TrayWatch(std::shared_ptr<XcbConnection> xcb, std::function<void()> onAppear)
    : connection(std::move(xcb))
    , appeared(std::move(onAppear))
    , bus(QDBusConnection::sessionBus())
{
    watchBus();
    watchServer();
    QMetaObject::invokeMethod(this, &TrayWatch::check, Qt::QueuedConnection);
}

void TrayWatch::watchBus()
{
    if (!bus.isConnected())
        return;
    watcher.setConnection(bus);
    watcher.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
    watcher.addWatchedService(kWatcherName);
    connect(&watcher, &QDBusServiceWatcher::serviceRegistered, this, &TrayWatch::check);
    bus.connect(kWatcherName, kWatcherPath, kWatcherName, QStringLiteral("StatusNotifierHostRegistered"), this,
                SLOT(check()));
}

void TrayWatch::watchServer()
{
    const auto firstEvent = connection ? connection->xfixesFirstEvent() : std::nullopt;
    if (!firstEvent)
        return;
    selection = connection->atom("_NET_SYSTEM_TRAY_S" + QByteArray::number(connection->screenNumber()));
    subscription = connection->listen([this, type = *firstEvent](const xcb_generic_event_t &event) {
        if (eventType(event) != type + XCB_XFIXES_SELECTION_NOTIFY)
            return;
        const auto &notify = reinterpret_cast<const xcb_xfixes_selection_notify_event_t &>(event);
        if (notify.selection == selection && notify.owner != XCB_NONE)
            check();
    });
    xcb_xfixes_select_selection_input(connection->get(), connection->root(), selection,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
    connection->flush();
}

void TrayWatch::check()
{
    if (!bus.isConnected()) {
        finish(false);
        return;
    }
    auto message = QDBusMessage::createMethodCall(kWatcherName, kWatcherPath, kProperties, QStringLiteral("Get"));
    message.setArguments({kWatcherName, QStringLiteral("IsStatusNotifierHostRegistered")});
    auto *call = new QDBusPendingCallWatcher(bus.asyncCall(message, kAnswerTime), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
        call->deleteLater();
        const QDBusPendingReply<QVariant> reply = *call;
        finish(reply.isValid() && reply.value().toBool());
    });
}

void TrayWatch::finish(bool hasNotifierHost)
{
    if (!appeared || !(hasNotifierHost || hasTrayManager()))
        return;
    subscription.reset();
    watcher.removeWatchedService(kWatcherName);
    bus.disconnect(kWatcherName, kWatcherPath, kWatcherName, QStringLiteral("StatusNotifierHostRegistered"), this,
                   SLOT(check()));
    // The receiver may delete this watch.
    std::exchange(appeared, nullptr)();
}

bool TrayWatch::hasTrayManager() const
{
    if (selection == XCB_ATOM_NONE)
        return false;
    const auto reply =
        connection->reply(xcb_get_selection_owner_reply, xcb_get_selection_owner(connection->get(), selection));
    return reply && reply->owner != XCB_NONE;
}
