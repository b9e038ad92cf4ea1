// SPDX-License-Identifier: MIT
#pragma once

#include "settings/AppSettings.h"
#include "settings/Notifications.h"
#include "shelf/DropViews.h"
#include "shelf/ShelfItemView.h"
#include "shelf/ShelfPanel.h"
#include "shelf/ShelfStackView.h"
#include "tests/support/VirtualPlatform.h"

#include <QApplication>
#include <QMouseEvent>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

inline QUrl file(int number)
{
    return QUrl::fromLocalFile(u"/files/%1.png"_s.arg(number));
}

inline QList<QUrl> files(int first, int count)
{
    QList<QUrl> urls;
    for (int i = 0; i < count; ++i)
        urls.append(file(first + i));
    return urls;
}

// A panel on a virtual platform, with a count of its announcements.
struct ItemsFixture {
    ItemsFixture()
    {
        panel = std::make_unique<ShelfPanel>(virtualPlatform.platform, settings, notifications);
        notifications.observe(Notifications::shelfItemsChanged, &observer, [this](const QVariantMap &userInfo) {
            ++changes;
            carried.insert(userInfo);
        });
        panel->onDropReceived = [this] { dropsWithItemCount.append(panel->items.size()); };
    }

    void add(int count)
    {
        for (const QUrl &url : files(static_cast<int>(panel->items.size()), count))
            panel->addItem(url);
    }
    void showImages()
    {
        QImage image(72, 72, QImage::Format_RGB32);
        image.fill(Qt::red);
        virtualPlatform.thumbnailGenerator.completeAll(image);
        virtualPlatform.mainQueue.runPending();
    }
    // Presses the left button on a tile and moves the pointer.
    void dragTile(qsizetype index) const
    {
        ShelfItemView *source = tile(index);
        QTest::mousePress(source, Qt::LeftButton, {}, QPoint(40, 40));
        QMouseEvent move(QEvent::MouseMove, QPointF(80, 80), source->mapToGlobal(QPointF(80, 80)), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(source, &move);
    }
    void drop(const QList<QUrl> &urls) { panel->container->onDrop(urls); }
    void set(const QString &key, const QVariant &value) { virtualPlatform.userDefaults.values.insert(key, value); }
    void advance(double seconds)
    {
        virtualPlatform.mainQueue.advance(seconds);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    ShelfItemView *tile(qsizetype index) const { return panel->stackView->arrangedSubviews().at(index); }
    qsizetype tileCount() const { return panel->stackView->arrangedSubviews().size(); }

    VirtualPlatform virtualPlatform;
    AppSettings settings{virtualPlatform.userDefaults, virtualPlatform.colorArchive, virtualPlatform.appearance};
    NotificationCenter notifications;
    QObject observer;
    int changes = 0;
    QVariantMap carried; // the contents of all announcements of changes
    QList<qsizetype> dropsWithItemCount;
    std::unique_ptr<ShelfPanel> panel;
};
