// SPDX-License-Identifier: MIT
#include "platform/common/QtDropPasteboard.h"

#include "platform/FileURLs.h"

QList<QUrl> QtDropPasteboard::fileURLs(const QMimeData *data) const
{
    return ::fileURLs(data);
}
