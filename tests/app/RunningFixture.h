// SPDX-License-Identifier: MIT
#pragma once

#include "tests/app/AppFixture.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

// The delegate of AppFixture, launched.
struct RunningFixture : AppFixture {
    explicit RunningFixture(const QMap<QString, QVariant> &settings = {})
    {
        values.insert(settings);
        launch();
    }

    VirtualStatusBar::Item *item() const { return virtualPlatform.statusBar.item; }
    QList<QAction *> menuItems() const { return item()->menu->actions(); }

    QAction *menuItem(const QString &title) const
    {
        for (QAction *action : menuItems()) {
            if (action->text() == title)
                return action;
        }
        return nullptr;
    }
    void choose(const QString &title) const { menuItem(title)->trigger(); }
    bool isChecked() const { return menuItem(kLaunchAtLogin)->isChecked(); }

    void appearancePane(const QVariantMap &userInfo)
    {
        shared.notifications().post(Notifications::appearancePaneActive, userInfo);
    }
    static QVariantMap active(const QVariant &value) { return {{u"active"_s, value}}; }

    // Saves a new PNG on the Desktop.
    QUrl saveScreenshot(const QString &name)
    {
        QFile png(home.path() + u"/Desktop/"_s + name);
        [&] { QVERIFY(png.open(QIODevice::WriteOnly)); }();
        const QUrl url = QUrl::fromLocalFile(png.fileName());
        virtualPlatform.fileEventStreams.creationDates.insert(url, queue.currentDate());
        virtualPlatform.fileEventStreams.send();
        return url;
    }

    // Starts a fade-out, and stops 0.08 seconds before its end.
    void fadeOut()
    {
        delegate->toggleShelf();
        queue.advance(1);
        delegate->toggleShelf();
        queue.advance(0.1);
        QVERIFY(shelf.isVisible());
        QVERIFY(shelf.isHiding());
    }
    // Whether the shelf fades in again and stays.
    bool comesBack()
    {
        if (shelf.isHiding())
            return false;
        queue.advance(10);
        return shelf.isVisible() && shelf.alpha() == 1.0;
    }

    inline static const QString kLaunchAtLogin = u"Launch at Login"_s;
};
