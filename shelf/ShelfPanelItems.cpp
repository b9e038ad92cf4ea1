// SPDX-License-Identifier: MIT
// The content side of the shelf panel: its items, drops, selection and what leaves it.
#include "platform/Platform.h"
#include "settings/AppSettings.h"
#include "settings/Notifications.h"
#include "shelf/ShelfGeometry.h"
#include "shelf/ShelfItemView.h"
#include "shelf/ShelfPanel.h"
#include "shelf/ShelfStackView.h"
#include "shelf/ShelfViews.h"
#include "shelf/TileViews.h"

#include <QAccessible>
#include <QLabel>
#include <QPointer>

#include <algorithm>
#include <iterator>

namespace {

constexpr qsizetype kMostItems = 50;
constexpr double kSelectionBorder = 2; // points
constexpr double kHighlightBorder = 2; // points
constexpr double kRemovalFade = 0.18;  // seconds
constexpr qsizetype kConfirmFrom = 2;  // items that are not cleared without a question

} // namespace

void ShelfPanel::addItem(const QUrl &url)
{
    if (items.contains(url) || items.size() >= kMostItems)
        return;
    items.append(url);

    auto *tile = new ShelfItemView(url, platform, settings, stackView);
    const QPointer<ShelfPanel> panel(this);
    const QPointer<ShelfItemView> weakTile(tile);
    tile->onRemove = [panel, url] {
        if (panel)
            panel->removeItem(url);
    };
    tile->onDragOut = [panel, url] {
        if (panel)
            panel->didDragOut(url);
    };
    tile->onSelect = [panel, weakTile] {
        if (panel && weakTile)
            panel->select(weakTile);
    };
    tile->onSelectAll = [panel] {
        if (panel)
            panel->selectAll();
    };
    tile->onDragStarted = [panel] {
        if (panel)
            panel->forgetDrop();
    };
    tile->getDragItems = [panel, weakTile]() -> std::optional<QList<DraggingItem>> {
        if (!panel || !weakTile)
            return {};
        return panel->dragItems(weakTile);
    };
    stackView->addArrangedSubview(
        tile, tileSize(settings.get(Settings::shelfItemSize), settings.get(Settings::fileNameDisplay)));

    updateHeader();
    updateFrame();
    restartAutoHideTimer();
    notifications.post(Notifications::shelfItemsChanged);
}

void ShelfPanel::handleDrop(const QList<QUrl> &urls)
{
    droppedBackOnSelf = true;
    droppedURLs.unite(QSet<QUrl>(urls.begin(), urls.end()));
    if (onDropReceived)
        onDropReceived();
    for (const QUrl &url : urls)
        addItem(url);
}

void ShelfPanel::highlight(bool on)
{
    visualFX->setBorder(on ? kHighlightBorder : 0, platform.appearance->accentColor());
}

void ShelfPanel::setSelected(ShelfItemView *tile, bool selected)
{
    tile->isSelected = selected;
    tile->setBorderWidth(selected ? kSelectionBorder : 0);
    QAccessible::State changed;
    changed.selected = true;
    QAccessibleStateChangeEvent event(tile, changed);
    QAccessible::updateAccessibility(&event);
}

void ShelfPanel::clearSelection()
{
    for (ShelfItemView *tile : selectedViews)
        setSelected(tile, false);
    selectedViews.clear();
    removeCmdATap();
}

void ShelfPanel::select(ShelfItemView *tile)
{
    clearSelection();
    setSelected(tile, true);
    selectedViews = {tile};
    installCmdATap();
}

void ShelfPanel::selectAll()
{
    selectedViews = stackView->arrangedSubviews();
    for (ShelfItemView *tile : selectedViews)
        setSelected(tile, true);
    if (!selectedViews.isEmpty())
        installCmdATap();
}

void ShelfPanel::selectAllAction()
{
    const auto &tiles = stackView->arrangedSubviews();
    if (!tiles.isEmpty() && selectedViews.size() == tiles.size())
        clearSelection();
    else
        selectAll();
}

void ShelfPanel::removeItem(const QUrl &url)
{
    if (!items.removeOne(url))
        return;
    const auto &tiles = stackView->arrangedSubviews();
    // A file that came back while its old tile still fades out has two tiles; the fading one is gone already.
    const auto found = std::find_if(tiles.begin(), tiles.end(), [&url](const ShelfItemView *tile) {
        return tile->fileURL == url && !tile->isFadingOut();
    });
    if (found == tiles.end())
        return;
    ShelfItemView *tile = *found;
    // The tap stays, also when nothing is selected any more.
    selectedViews.removeAll(tile);
    tile->fadeOut(kRemovalFade);
    // The removal ends then also when the tile is cleared away during its fade.
    platform.mainQueue->after(kRemovalFade,
                              [panel = QPointer<ShelfPanel>(this), weakTile = QPointer<ShelfItemView>(tile)] {
                                  if (panel)
                                      panel->tileDidFadeOut(weakTile);
                              });
}

void ShelfPanel::tileDidFadeOut(ShelfItemView *tile)
{
    if (tile) {
        // A select-all during the fade may have taken the tile up again.
        selectedViews.removeAll(tile);
        stackView->removeArrangedSubview(tile);
    }
    itemsDidChange();
}

std::optional<QList<DraggingItem>> ShelfPanel::dragItems(ShelfItemView *tile)
{
    if (!selectedViews.contains(tile))
        return {};
    const double itemSize = settings.get(Settings::shelfItemSize);
    QList<DraggingItem> dragged;
    QList<QUrl> selection;
    QList<QUrl> carried;
    for (const ShelfItemView *selected : selectedViews) {
        selection.append(selected->fileURL);
        if (!selected->imageView->hasImage())
            continue;
        carried.append(selected->fileURL);
        dragged.append(DraggingItem{selected->fileURL, tile->draggingFrame(), selected->imageView->image(itemSize)});
    }
    // The end of this drag may come after the selection has changed, another drag has begun or the tile has gone.
    tile->onMultiDragOut = [panel = QPointer<ShelfPanel>(this), selection, carried] {
        if (panel)
            panel->didDragOutSelection(selection, carried);
    };
    return dragged;
}

bool ShelfPanel::cameBack(const QUrl &url) const
{
    return droppedBackOnSelf && droppedURLs.contains(url);
}

void ShelfPanel::forgetDrop()
{
    droppedBackOnSelf = false;
    droppedURLs.clear();
}

void ShelfPanel::didDragOut(const QUrl &url)
{
    // Other files may have been dropped while the destination took its time.
    if (!cameBack(url))
        removeItem(url);
    forgetDrop();
}

void ShelfPanel::didDragOutSelection(const QList<QUrl> &selection, const QList<QUrl> &carried)
{
    QList<QUrl> gone;
    // When the whole drag came back, so did those of the selection that it could not carry.
    if (!droppedBackOnSelf || !std::ranges::all_of(carried, [this](const QUrl &url) { return cameBack(url); }))
        std::ranges::copy_if(selection, std::back_inserter(gone), [this](const QUrl &url) { return !cameBack(url); });
    forgetDrop();
    if (gone.isEmpty())
        return;
    // The tiles keep their selected look; they are about to go.
    selectedViews.removeIf([&gone](const ShelfItemView *tile) { return gone.contains(tile->fileURL); });
    if (selectedViews.isEmpty())
        removeCmdATap();
    for (const QUrl &url : gone)
        removeItem(url);
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

void ShelfPanel::updateHeader()
{
    dropLabel->setVisible(items.isEmpty());
    selectAllBtn->setVisible(items.size() >= 2);
}

void ShelfPanel::itemsDidChange()
{
    updateHeader();
    updateFrame();
    if (items.isEmpty())
        scheduleHideIfEmpty();
    notifications.post(Notifications::shelfItemsChanged);
}
