// SPDX-License-Identifier: MIT
#pragma once

#include "settings/AppSettings.h"
#include "settings/Notifications.h"
#include "tests/support/VirtualPlatform.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QVariantMap>
#include <QWidget>

#include <memory>

// The services that the preferences need, with a record of every notification.
struct Fixture {
    struct Posted {
        QString name;
        QVariantMap userInfo;
        QMap<QString, QVariant> values; // the stored values at that moment
    };

    Fixture()
    {
        QObject::connect(&notifications, &NotificationCenter::posted, &notifications,
                         [this](const QString &name, const QVariantMap &userInfo) {
                             posts.append({name, userInfo, values});
                         });
    }

    // The number of posted settingsChanged notifications. Fails if any other was posted.
    int settingsChangedPosts() const
    {
        for (const Posted &post : posts) {
            if (post.name != Notifications::settingsChanged || !post.userInfo.isEmpty())
                return -1;
        }
        return static_cast<int>(posts.size());
    }

    // The value that an observer of the last notification could read.
    QVariant storedAtLastPost(const QString &key) const
    {
        return posts.isEmpty() ? QVariant() : posts.last().values.value(key);
    }

    QVariant stored(const QString &key) const { return virtualPlatform.userDefaults.values.value(key); }

    // Shows the new pane `newPane` in place of the previous one.
    template<typename Pane>
    Pane &show(std::unique_ptr<Pane> newPane, const QSize &size = QSize(520, 500))
    {
        Pane &shown = *newPane;
        window = std::make_unique<QWidget>();
        window->resize(size);
        newPane.release()->setParent(window.get());
        shown.loadView();
        shown.resize(size);
        window->show();
        return shown;
    }

    VirtualPlatform virtualPlatform;
    AppSettings settings{virtualPlatform.userDefaults, virtualPlatform.colorArchive, virtualPlatform.appearance};
    NotificationCenter notifications;
    QMap<QString, QVariant> &values = virtualPlatform.userDefaults.values;
    QList<Posted> posts;
    std::unique_ptr<QWidget> window;
};

// The frame of `view` in `pane`.
inline QRect frameIn(const QWidget &pane, const QWidget &view)
{
    return {view.mapTo(&pane, QPoint(0, 0)), view.size()};
}

// The label with this text, or null.
inline QLabel *labelWith(const QWidget &pane, const QString &text)
{
    for (QLabel *label : pane.findChildren<QLabel *>()) {
        if (label->text() == text)
            return label;
    }
    return nullptr;
}
