// SPDX-License-Identifier: MIT
// The application delegate's side of drags in other applications: whether and how the shelf shows, and when it hides.
#include "app/AppDelegate.h"
#include "app/SharedInstances.h"
#include "drag/AutoShow.h"
#include "platform/Platform.h"
#include "platform/WhileAlive.h"
#include "shelf/ShelfGeometry.h"

namespace {

// Seconds from the release until an unused shelf hides. A drop may arrive in between.
constexpr double kHideCheckDelay = 0.15;

} // namespace

void AppDelegate::dragMonitorDidStartDrag(const QList<QUrl> &)
{
    AppSettings &settings = shared.settings();
    if (!settings.get(Settings::autoShowDropWindow))
        return;
    if (isExcluded(platform.workspace->frontmostBundleIdentifier(), settings.get(Settings::excludeMode),
                   settings.get(Settings::excludedBundleIDs)))
        return;

    dropReceivedOnShelf = false;
    const AutoShowTrigger trigger = settings.get(Settings::autoShowTrigger);
    switch (trigger) {
    case AutoShowTrigger::AtOnce:
    case AutoShowTrigger::NearCursor:
        // A shelf that fades out shows again, so this drag has shown it.
        shelfShownByCurrentDrag = !shelf.isVisible() || shelf.isHiding();
        showShelf();
        if (trigger == AutoShowTrigger::NearCursor)
            cursorShelf.showNearCursor();
        break;
    case AutoShowTrigger::WhenNear:
        startProximityMonitor();
        break;
    default:
        break;
    }
}

void AppDelegate::startProximityMonitor()
{
    // Compute where the hidden shelf would show.
    shelf.updateFrame();
    const QRectF frame = flipped(shelf.frame(), platform.screens->flipHeight());
    proximityMonitor = platform.eventMonitors->addNear(frame, whileAlive(this, [this] { proximityCheck(); }));
}

void AppDelegate::proximityCheck()
{
    if (shelf.isVisible())
        return;
    const std::optional<QPointF> pointer = platform.screens->pointer();
    if (!pointer || !isNear(flipped(*pointer, platform.screens->flipHeight()), shelf.frame()))
        return;
    platform.mainQueue->async(this, [this] {
        if (!shelf.isVisible()) {
            shelf.show(Animated::Yes);
            shelfShownByCurrentDrag = true;
        }
    });
}

void AppDelegate::dragMonitorDidEndDrag()
{
    cursorShelf.hide();
    if (proximityMonitor) {
        platform.eventMonitors->remove(*proximityMonitor);
        proximityMonitor.reset();
    }
    const bool shown = shelfShownByCurrentDrag;
    shelfShownByCurrentDrag = false;
    if (!shown)
        return;
    checkSoonWhetherUnused();
}

void AppDelegate::checkSoonWhetherUnused()
{
    platform.mainQueue->after(kHideCheckDelay, whileAlive(this, [this] {
                                  if (dropReceivedOnShelf || !shelf.items.isEmpty())
                                      return;
                                  // The source has not yet told what was dropped.
                                  if (platform.dropPasteboard->isReading())
                                      checkSoonWhetherUnused();
                                  else
                                      shelf.hide(Animated::Yes);
                              }));
}
