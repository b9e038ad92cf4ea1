// SPDX-License-Identifier: MIT
#pragma once

#include "settings/AppSettings.h"
#include "settings/Notifications.h"
#include "shelf/ShelfPanel.h"
#include "shelf/ShelfStackView.h"
#include "tests/support/VirtualPlatform.h"

using namespace Qt::StringLiterals;

inline QUrl file(int number)
{
    return QUrl::fromLocalFile(u"/files/%1.png"_s.arg(number));
}

// A panel on a virtual platform.
struct PanelFixture {
    PanelFixture() { panel = std::make_unique<ShelfPanel>(virtualPlatform.platform, settings, notifications); }

    void add(int count)
    {
        for (int i = 0; i < count; ++i)
            panel->addItem(file(static_cast<int>(panel->items.size())));
    }
    void set(const QString &key, const QVariant &value) { virtualPlatform.userDefaults.values.insert(key, value); }
    void advance(double seconds) { virtualPlatform.mainQueue.advance(seconds); }
    ShelfItemView *tile(qsizetype index) const { return panel->stackView->arrangedSubviews().at(index); }

    VirtualPlatform virtualPlatform;
    AppSettings settings{virtualPlatform.userDefaults, virtualPlatform.colorArchive, virtualPlatform.appearance};
    NotificationCenter notifications;
    std::unique_ptr<ShelfPanel> panel;
};
