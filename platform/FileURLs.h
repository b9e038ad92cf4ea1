// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QUrl>

class QMimeData;

// At most so much of a list of addresses is read: far more than a shelf can hold, and still read quickly. Of a longer
// list, the complete lines up to this size and number count.
constexpr qsizetype kLongestAddressList = qsizetype(640) * 1024; // bytes; fifty of the longest addresses
constexpr qsizetype kMostAddresses = 2'000;
// At most so many bytes of a link are read.
constexpr qsizetype kLongestLink = qsizetype(64) * 1024;

// All file URLs in `data`, in their order. Empty when it has none, or when it has anything that is not a file on this
// machine (there is no partial list). An address that is longer than a path or name can be is not a file. The path of a
// URL may have bytes that are not UTF-8, which stay percent-encoded.
QList<QUrl> fileURLs(const QMimeData *data);

// The same for the text of a text/uri-list: one URL in each line; comments ("#") and empty lines are skipped.
QList<QUrl> fileURLs(const QByteArray &uriList);

// The same for a link in a browser's drag (text/x-moz-url): UTF-16, with the address in the first line. A drop of the
// link uses that address only.
QList<QUrl> linkedFileURLs(const QByteArray &link);

// The path of a file URL in the bytes of the file system, which may be invalid UTF-8.
QByteArray fileSystemPath(const QUrl &fileURL);

// The file URL of a path in these bytes. Equal paths have equal URLs, and the functions above return the same ones.
QUrl fileURL(const QByteArray &path);

// The name to show for a file URL: its last path component, without a trailing slash. That of the root is "/".
QString lastPathComponent(const QUrl &fileURL);
