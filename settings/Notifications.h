// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <QVariantMap>

#include <functional>

// The notifications between rooms that do not know each other.
namespace Notifications {
inline const QString openPreferences = QStringLiteral("com.orvane.Parklet.openPreferences");
inline const QString shelfItemsChanged = QStringLiteral("com.orvane.Parklet.shelfItemsChanged");
inline const QString settingsChanged = QStringLiteral("com.orvane.Parklet.settingsChanged");
// User info {"active": Bool}: whether the Appearance pane is the shown pane now.
inline const QString appearancePaneActive = QStringLiteral("com.orvane.Parklet.appearancePaneActive");
} // namespace Notifications

// Delivers notifications by name, at once and in the order of subscription. Main thread only.
class NotificationCenter : public QObject {
    Q_OBJECT

public:
    using Handler = std::function<void(const QVariantMap &userInfo)>;

    // Subscribes `handler` to `name` for as long as `observer` lives.
    void observe(const QString &name, QObject *observer, Handler handler);

    void post(const QString &name, const QVariantMap &userInfo = {});

signals:
    void posted(const QString &name, const QVariantMap &userInfo);
};
