// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DropPasteboard.h"

// Drops as Qt delivers them, for desktops on which their contents are available at once.
class QtDropPasteboard : public DropPasteboard {
public:
    QList<QUrl> fileURLs(const QMimeData *data) const override;
    bool isReading() const override { return false; }
};
