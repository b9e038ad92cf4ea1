// SPDX-License-Identifier: MIT
#include "platform/common/QtPasteboard.h"

#include "platform/FileURLs.h"

#include <QClipboard>
#include <QGuiApplication>

QList<QUrl> QtPasteboard::fileURLs() const
{
    return ::fileURLs(QGuiApplication::clipboard()->mimeData());
}
