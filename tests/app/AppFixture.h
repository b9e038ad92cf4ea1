// SPDX-License-Identifier: MIT
#pragma once

#include "app/AppDelegate.h"
#include "app/SharedInstances.h"
#include "settings/AppSettings.h"
#include "settings/Notifications.h"
#include "tests/support/VirtualPlatform.h"

#include <QDir>
#include <QTemporaryDir>

#include <memory>

using namespace Qt::StringLiterals;

// An application delegate on the virtual platform, not yet launched, with its own home folder. The question of the
// first run is already answered.
struct AppFixture {
    AppFixture()
    {
        values.insert(Settings::hasShownUpdatePrompt.key, true);
        qputenv("HOME", home.path().toLocal8Bit());
        QDir(home.path()).mkdir(u"Desktop"_s);
    }

    void launch() { delegate->applicationDidFinishLaunching(); }

    // Changes a setting and announces it, as a preference pane does.
    void change(const QString &key, const QVariant &value)
    {
        values.insert(key, value);
        shared.notifications().post(Notifications::settingsChanged);
    }

    QTemporaryDir home;
    VirtualPlatform virtualPlatform;
    QMap<QString, QVariant> &values = virtualPlatform.userDefaults.values;
    QStringList &calls = virtualPlatform.log.calls;
    VirtualMainQueue &queue = virtualPlatform.mainQueue;
    VirtualFloatingPanels &panels = virtualPlatform.floatingPanels;
    SharedInstances shared{virtualPlatform.platform};
    std::unique_ptr<AppDelegate> delegate = std::make_unique<AppDelegate>(shared);
    ShelfPanel &shelf = delegate->shelf;
    CursorShelf &cursorShelf = delegate->cursorShelf;
};

inline QUrl file(const char *path)
{
    return QUrl::fromLocalFile(QString::fromUtf8(path));
}
