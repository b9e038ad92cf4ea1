// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QUrl>

class QMimeData;

// All file URLs in `data`, in their order. Empty when there is none, or when one entry is no file on this machine:
// there is no partial list. Bytes of a path that are no UTF-8 stay percent-encoded.
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
