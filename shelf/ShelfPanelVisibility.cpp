// SPDX-License-Identifier: MIT
// When the shelf shows, what empties it, and when it hides.
#include "platform/Platform.h"
#include "platform/WhileAlive.h"
#include "settings/AppSettings.h"
#include "settings/Notifications.h"
#include "shelf/ShelfItemView.h"
#include "shelf/ShelfMetrics.h"
#include "shelf/ShelfPanel.h"
#include "shelf/ShelfStackView.h"

#include <QPointer>

#include <algorithm>

using namespace ShelfMetrics;

void ShelfPanel::show(Animated animated)
{
    hiding = false;
    updateFrame();
    if (animated == Animated::Yes && !settings.get(Settings::disableAnimations)) {
        fader.setAlpha(0);
        platform.floatingPanels->orderFront(*this);
        fader.fade(1.0, kShelfFadeIn, FadeCurve::EaseOut);
        restartAutoHideTimer();
    } else {
        // Without the fade the timer is not restarted.
        fader.setAlpha(1.0);
        platform.floatingPanels->orderFront(*this);
    }
}

void ShelfPanel::removeItem(const QUrl &url)
{
    if (!items.removeOne(url))
        return;
    const auto &tiles = stackView->arrangedSubviews();
    // A file that was added again while its old tile fades out has two tiles; the old one does not count.
    const auto found = std::find_if(tiles.begin(), tiles.end(), [&url](const ShelfItemView *tile) {
        return tile->fileURL == url && !tile->isFadingOut();
    });
    if (found == tiles.end())
        return;
    ShelfItemView *tile = *found;
    // The tap stays, even when nothing is selected any more.
    selectedViews.removeAll(tile);
    tile->fadeOut(kTileFadeOut);
    // The removal ends then, even if the tile is deleted during its fade.
    platform.mainQueue->after(kTileFadeOut,
                              whileAlive(this, [this, weakTile = QPointer(tile)] { tileDidFadeOut(weakTile); }));
}

void ShelfPanel::tileDidFadeOut(ShelfItemView *tile)
{
    if (tile) {
        // A select-all during the fade may have selected the tile again.
        selectedViews.removeAll(tile);
        stackView->removeArrangedSubview(tile);
    }
    itemsDidChange();
}

void ShelfPanel::clearAll()
{
    if (items.size() >= kConfirmFrom && !settings.get(Settings::skipClearAllConfirmation)) {
        Alert alert;
        alert.messageText = tr("Clear all files?");
        //: Asked of two files or more.
        alert.informativeText =
            tr("This will remove all %n files from the shelf.", nullptr, static_cast<int>(items.size()));
        alert.buttons = {tr("Clear All"), tr("Cancel")};
        alert.checkboxTitle = tr("Don't show this message again");
        alert.dark = true;
        const AlertAnswer answer = platform.alerts->runModal(alert);
        if (!answer.isFirstButton())
            return;
        if (answer.checkboxOn)
            settings.set(Settings::skipClearAllConfirmation, true);
    }
    removeAllItems();
}

void ShelfPanel::removeAllItems()
{
    items.clear();
    selectedViews.clear();
    removeCmdATap();
    const auto tiles = stackView->arrangedSubviews();
    for (ShelfItemView *tile : tiles)
        stackView->removeArrangedSubview(tile);
    itemsDidChange();
}

void ShelfPanel::itemsDidChange()
{
    updateHeader();
    updateFrame();
    if (items.isEmpty())
        scheduleHideIfEmpty();
    notifications.post(Notifications::shelfItemsChanged);
}

void ShelfPanel::restartAutoHideTimer()
{
    if (autoHideTimer)
        autoHideTimer->invalidate();
    const double timeout = settings.get(Settings::autoHideTimeout);
    if (timeout > 0)
        autoHideTimer = platform.mainQueue->after(timeout, whileAlive(this, [this] { hideIfEmpty(); }));
}

void ShelfPanel::scheduleHideIfEmpty()
{
    if (autoHideTimer)
        autoHideTimer->invalidate();
    autoHideTimer = platform.mainQueue->after(kEmptyShelfDelay, whileAlive(this, [this] { hideIfEmpty(); }));
}

void ShelfPanel::hideIfEmpty()
{
    if (!items.isEmpty() || hiding)
        return;
    hide(Animated::Yes);
    // A file that is added during the fade-out makes the shelf show again.
    hidesOnlyEmpty = hiding;
}

void ShelfPanel::hide(Animated animated)
{
    if (!isVisible())
        return;
    if (autoHideTimer)
        autoHideTimer->invalidate();
    hidesOnlyEmpty = false;
    if (animated == Animated::No || settings.get(Settings::disableAnimations))
        vanish();
    else if (!hiding)
        fadeOut();
}

void ShelfPanel::fadeOut()
{
    hiding = true;
    fader.fade(0.0, kShelfFadeOut, FadeCurve::Standard, [this] {
        if (!hidesOnlyEmpty || items.isEmpty()) {
            vanish();
            return;
        }
        hiding = false;
        fader.fade(1.0, kShelfFadeIn, FadeCurve::EaseOut);
    });
}

void ShelfPanel::vanish()
{
    hiding = false;
    platform.floatingPanels->orderOut(*this);
    fader.setAlpha(1.0);
}
