// SPDX-License-Identifier: MIT
// Which tiles are selected, and the key that selects them all.
#include "platform/Platform.h"
#include "platform/WhileAlive.h"
#include "shelf/SelectAllKey.h"
#include "shelf/ShelfItemView.h"
#include "shelf/ShelfMetrics.h"
#include "shelf/ShelfPanel.h"
#include "shelf/ShelfStackView.h"

#include <QAccessible>

using namespace ShelfMetrics;

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

void ShelfPanel::installCmdATap()
{
    if (isTapInstalled)
        return;
    isTapInstalled = platform.keyTap->install(whileAlive(this, [this](Qt::Key key, Qt::KeyboardModifiers modifiers) {
        if (!isSelectAllKey(key, modifiers))
            return false;
        // Answer the key press first; it must not wait for the tiles.
        platform.mainQueue->async(this, [this] { selectAll(); });
        return true;
    }));
}

void ShelfPanel::removeCmdATap()
{
    if (!isTapInstalled)
        return;
    platform.keyTap->remove();
    isTapInstalled = false;
}
