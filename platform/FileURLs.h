// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QUrl>

class QMimeData;

// How much of a list of addresses is read: far more than a shelf can hold, and little enough that nobody waits for it.
// A longer list counts as what its first so many whole lines and addresses say.
constexpr qsizetype kLongestAddressList = qsizetype(640) * 1024; // bytes; fifty of the longest addresses
constexpr qsizetype kMostAddresses = 2'000;
// How much of a link is read, in bytes.
constexpr qsizetype kLongestLink = qsizetype(64) * 1024;

// Every file URL that `data` carries, in its order; empty when it carries none, or anything that is not a file on
// this machine (there is no partial list). What is longer than a path or a name can be is no file. A URL's path may
// hold bytes that are no UTF-8; they stay percent-encoded.
QList<QUrl> fileURLs(const QMimeData *data);

// The same for the text of a text/uri-list: one URL in each line; comments ("#") and empty lines are skipped.
QList<QUrl> fileURLs(const QByteArray &uriList);

// The same for a link in a browser's drag (text/x-moz-url): UTF-16, with the address in the first line. A drop of the
// link uses that address only.
QList<QUrl> linkedFileURLs(const QByteArray &link);

// The path of a file URL as the bytes that the file system has, even if they are no UTF-8.
QByteArray fileSystemPath(const QUrl &fileURL);

// The file URL of a path, given as those bytes. Equal paths have equal URLs, and the functions above return the same
// ones.
QUrl fileURL(const QByteArray &path);

// The name to show for a file URL: its last path component, without a trailing slash.
QString lastPathComponent(const QUrl &fileURL);
