// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QSet>

#include <string_view>

// Which files on the Desktop are new screenshots. Names are the bytes that the file system has.

// Whether a file of that name can be a screenshot: it ends in ".png", in lower case only.
bool isScreenshotName(std::string_view name);

// The names in `folder` (a path) that can be screenshots, hidden ones included; empty when it cannot be read.
QSet<QByteArray> screenshotNames(const QByteArray &folder);

// Replaces `known` by what `screenshotNames` returns now, and returns the names that are new, in no particular order.
QList<QByteArray> refreshNames(QSet<QByteArray> &known, const QByteArray &folder);

// Whether a file of that creation date is new: less than 10 seconds old, or dated in the future.
bool isRecent(const QDateTime &creationDate, const QDateTime &now);
