// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DropPasteboard.h"

// Drops as Qt delivers them, where the desktop has what they carry at hand.
class QtDropPasteboard : public DropPasteboard {
public:
    QList<QUrl> fileURLs(const QMimeData *data) const override;
    bool isReading() const override { return false; }
};
