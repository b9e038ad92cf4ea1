// SPDX-License-Identifier: MIT
// The files of the shelf: how they come, by a drop or otherwise, and what a drag out takes with it.
#include "platform/Platform.h"
#include "platform/WhileAlive.h"
#include "settings/AppSettings.h"
#include "settings/Notifications.h"
#include "shelf/ShelfGeometry.h"
#include "shelf/ShelfItemView.h"
#include "shelf/ShelfMetrics.h"
#include "shelf/ShelfPanel.h"
#include "shelf/ShelfStackView.h"
#include "shelf/ShelfViews.h"
#include "shelf/TileViews.h"

#include <QLabel>

#include <algorithm>
#include <iterator>

using namespace ShelfMetrics;

void ShelfPanel::addItem(const QUrl &url)
{
    if (items.contains(url) || items.size() >= kMostItems)
        return;
    items.append(url);

    auto *tile = new ShelfItemView(url, platform, settings, stackView);
    tile->onRemove = whileAlive(this, [this, url] { removeItem(url); });
    tile->onDragOut = whileAlive(this, [this, url] { didDragOut(url); });
    tile->onSelect = whileAlive(this, whileAlive(tile, [this, tile] { select(tile); }));
    tile->onSelectAll = whileAlive(this, [this] { selectAll(); });
    tile->onDragStarted = whileAlive(this, [this] { forgetDrop(); });
    tile->getDragItems = whileAlive(this, whileAlive(tile, [this, tile] { return dragItems(tile); }));
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

void ShelfPanel::setHighlighted(bool on)
{
    visualFX->setBorder(on ? kHighlightBorder : 0, platform.appearance->accentColor());
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
    // Capture the selection: by the end of this drag it may differ, and the tile may be deleted.
    tile->onMultiDragOut = whileAlive(this, [this, selection, carried] { didDragOutSelection(selection, carried); });
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
    // Other files may have been dropped before the destination finished.
    if (!cameBack(url))
        removeItem(url);
    forgetDrop();
}

void ShelfPanel::didDragOutSelection(const QList<QUrl> &selection, const QList<QUrl> &carried)
{
    QList<QUrl> gone;
    // If all dragged files were dropped back, keep also the selected ones that the drag could not carry.
    if (!droppedBackOnSelf || !std::ranges::all_of(carried, [this](const QUrl &url) { return cameBack(url); }))
        std::ranges::copy_if(selection, std::back_inserter(gone), [this](const QUrl &url) { return !cameBack(url); });
    forgetDrop();
    if (gone.isEmpty())
        return;
    // The tiles keep their selection border while they fade out.
    selectedViews.removeIf([&gone](const ShelfItemView *tile) { return gone.contains(tile->fileURL); });
    if (selectedViews.isEmpty())
        removeCmdATap();
    for (const QUrl &url : gone)
        removeItem(url);
}
