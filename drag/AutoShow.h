// SPDX-License-Identifier: MIT
#pragma once

#include "settings/SettingsTable.h"

#include <QPointF>
#include <QRectF>
#include <QString>
#include <QStringList>

#include <optional>

// The rules for when a drag shows the shelf.

// Whether the frontmost application keeps the shelf hidden. An application without an identifier does not, and neither
// does "show only in" with an empty list.
bool isExcluded(const std::optional<QString> &frontmost, ExcludeMode excludeMode, const QStringList &excludedBundleIDs);

// Whether the pointer is within 120 points of the shelf's frame, both in the same coordinates.
bool isNear(const QPointF &pointer, const QRectF &shelfFrame);
