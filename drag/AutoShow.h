// SPDX-License-Identifier: MIT
#pragma once

#include "settings/SettingsTable.h"

#include <QPointF>
#include <QRectF>
#include <QString>
#include <QStringList>

#include <optional>

// The decisions of when a drag brings the shelf.

// Whether the shelf stays away because of the frontmost application. An application without an identifier excludes
// nothing, nor does "show only in" with an empty list.
bool isExcluded(const std::optional<QString> &frontmost, ExcludeMode excludeMode, const QStringList &excludedBundleIDs);

// Whether the pointer is within 120 points of the shelf's frame, both in the same coordinates.
bool isNear(const QPointF &pointer, const QRectF &shelfFrame);
