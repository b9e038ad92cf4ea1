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

#include <utility>

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
    tile->onDragStarted = whileAlive(this, [this] { droppedBackOnSelf = false; });
    tile->getDragItems = whileAlive(this, whileAlive(tile, [this, tile] { return dragItems(tile); }));
    tile->onMultiDragOut = whileAlive(this, [this] { didDragOutSelection(); });
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
    for (const ShelfItemView *selected : selectedViews) {
        if (selected->imageView->hasImage())
            dragged.append(
                DraggingItem{selected->fileURL, tile->draggingFrame(), selected->imageView->image(itemSize)});
    }
    return dragged;
}

void ShelfPanel::didDragOut(const QUrl &url)
{
    if (!droppedBackOnSelf)
        removeItem(url);
    droppedBackOnSelf = false;
}

void ShelfPanel::didDragOutSelection()
{
    if (droppedBackOnSelf) {
        droppedBackOnSelf = false;
        return;
    }
    QList<QUrl> gone;
    for (const ShelfItemView *tile : std::as_const(selectedViews))
        gone.append(tile->fileURL);
    // The tiles keep their selection border while they fade out.
    selectedViews.clear();
    removeCmdATap();
    for (const QUrl &url : std::as_const(gone))
        removeItem(url);
    droppedBackOnSelf = false;
}
