// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <optional>

#include <sys/types.h>

// Which file a path leads to, and its state. Two equal ones mean that nothing has changed.
struct FileIdentity {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    qint64 modified = 0; // nanoseconds since 1970
    qint64 changed = 0;  // the same, of the inode

    bool operator==(const FileIdentity &) const = default;

    // Whether both are of one file, changed meanwhile or not.
    bool isSameFile(const FileIdentity &other) const { return device == other.device && inode == other.inode; }
};

struct stat;
FileIdentity fileIdentity(const struct stat &status);

// The folder that holds `path`.
QByteArray folderOf(const QByteArray &path);

// How many links the kernel follows on the way of one path.
constexpr int kMostLinks = 40;

// The target of a link. Empty for any other path; errno says why.
QByteArray readLink(const QByteArray &link);

// The path that `path` leads to through links, whether or not there is a file; empty for a loop of links.
QByteArray linkTarget(const QByteArray &path);

// Makes a folder and those above it, private to the user, each of them durable. False when one cannot be made.
bool makePrivateFolder(const QByteArray &path);

// The whole of a regular file, at most `limit` bytes. Anything else - a pipe, a device, a folder - is never opened.
std::optional<QByteArray> readRegularFile(const QByteArray &path, qint64 limit);

// Replaces the file at `path` at once and durably: whatever happens, there is either the old file or the new one. Goes
// through links, keeps the permissions of a file that is there and gives a new one to its user alone. False when the
// folder or the file may not be written or there is no space; the old file is whole then. One writer at a time.
bool replaceFile(const QByteArray &path, const QByteArray &contents);
