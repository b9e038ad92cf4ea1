// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QSet>

#include <string_view>

// What makes a file on the Desktop a new screenshot. Names are the bytes the file system knows them by.

// Whether a file of that name can be a screenshot: it ends in ".png", in lower case only.
bool isScreenshotName(std::string_view name);

// The names in `folder` (a path) that can be screenshots, hidden ones included; empty when it cannot be read.
QSet<QByteArray> screenshotNames(const QByteArray &folder);

// Makes `known` the names that `screenshotNames` answers now, and returns those that it did not hold before, in no
// particular order.
QList<QByteArray> refreshNames(QSet<QByteArray> &known, const QByteArray &folder);

// Whether a file created then was made just now: less than 10 seconds ago, or at a date still to come.
bool isRecent(const QDateTime &creationDate, const QDateTime &now);
