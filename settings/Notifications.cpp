// SPDX-License-Identifier: MIT
#include "settings/Notifications.h"

void NotificationCenter::observe(const QString &name, QObject *observer, Handler handler)
{
    connect(this, &NotificationCenter::posted, observer,
            [name, handler = std::move(handler)](const QString &postedName, const QVariantMap &userInfo) {
                if (postedName == name)
                    handler(userInfo);
            });
}

void NotificationCenter::post(const QString &name, const QVariantMap &userInfo)
{
    emit posted(name, userInfo);
}
