// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QUrl>

class QMimeData;

// Every file URL that `data` carries, in its order; empty when it carries none, or anything that is not a file on
// this machine (there is no partial list). A URL's path may hold bytes that are no UTF-8; they stay percent-encoded.
QList<QUrl> fileURLs(const QMimeData *data);

// The same for the text of a text/uri-list: one URL a line, comments ("#") and empty lines left out.
QList<QUrl> fileURLs(const QByteArray &uriList);

// The same for a link as browsers put it into a drag (text/x-moz-url): in UTF-16, the address on its first line. It is
// the only one that a drop of the link takes, so no further one counts.
QList<QUrl> linkedFileURLs(const QByteArray &link);

// The path of a file URL as the bytes the file system knows it by, also where they are no UTF-8.
QByteArray fileSystemPath(const QUrl &fileURL);

// The file URL of a path, given as those bytes. Equal for equal paths, and to what the functions above answer.
QUrl fileURL(const QByteArray &path);

// The name to show for a file URL: its last path component, a trailing slash ignored.
QString lastPathComponent(const QUrl &fileURL);
