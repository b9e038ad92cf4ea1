// SPDX-License-Identifier: MIT
#include "platform/common/QtPasteboard.h"

#include "platform/FileURLs.h"

#include <QClipboard>
#include <QGuiApplication>

void QtPasteboard::readFileURLs(Done done)
{
    done(fileURLs(QGuiApplication::clipboard()->mimeData()));
}
