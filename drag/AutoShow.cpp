// SPDX-License-Identifier: MIT
#include "drag/AutoShow.h"

namespace {

constexpr double kProximity = 120; // points around the shelf

} // namespace

bool isExcluded(const std::optional<QString> &frontmost, ExcludeMode excludeMode, const QStringList &excludedBundleIDs)
{
    if (!frontmost)
        return false;
    const bool listed = excludedBundleIDs.contains(*frontmost, Qt::CaseSensitive);
    switch (excludeMode) {
    case ExcludeMode::HideInListed:
        return listed;
    case ExcludeMode::ShowOnlyInListed:
        return !excludedBundleIDs.isEmpty() && !listed;
    default:
        return false;
    }
}

bool isNear(const QPointF &pointer, const QRectF &shelfFrame)
{
    return shelfFrame.adjusted(-kProximity, -kProximity, kProximity, kProximity).contains(pointer);
}
