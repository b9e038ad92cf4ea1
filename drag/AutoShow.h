// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>
#include <QRectF>
#include <QString>
#include <QStringList>

#include <optional>

// The decisions of when a drag brings the shelf.

// The values of the autoShowTrigger setting. With any other value nothing is shown.
enum AutoShowTrigger { kShowAtOnce = 0, kShowNearCursor = 1, kShowWhenNear = 2 };

// The values of the excludeMode setting. With any other value no application is excluded.
enum ExcludeMode { kHideInListed = 0, kShowOnlyInListed = 1 };

// Whether the shelf stays away because of the frontmost application. An application without an identifier excludes
// nothing, nor does "show only in" with an empty list.
bool isExcluded(const std::optional<QString> &frontmost, qint64 excludeMode, const QStringList &excludedBundleIDs);

// Whether the pointer is within 120 points of the shelf's frame, both in the same coordinates.
bool isNear(const QPointF &pointer, const QRectF &shelfFrame);
