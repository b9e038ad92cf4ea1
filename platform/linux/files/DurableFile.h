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

    // Whether both are of the same file, even if it has changed.
    bool isSameFile(const FileIdentity &other) const { return device == other.device && inode == other.inode; }
};

struct stat;
FileIdentity fileIdentity(const struct stat &status);

// The folder that holds `path`.
QByteArray folderOf(const QByteArray &path);

// How many symbolic links the kernel follows in one path.
constexpr int kMostLinks = 40;

// The target of a link. Empty for any other path; errno says why.
QByteArray readLink(const QByteArray &link);

// The path that `path` leads to through links, whether or not there is a file. Empty for a loop of links.
QByteArray linkTarget(const QByteArray &path);

// Makes a folder and its parents, durably and private to the user. False when one cannot be made.
bool makePrivateFolder(const QByteArray &path);

// The contents of a regular file of at most `limit` bytes. Opens nothing else: no pipe, device or folder.
std::optional<QByteArray> readRegularFile(const QByteArray &path, qint64 limit);

// Replaces the file at `path` atomically and durably: whatever happens, there is either the old file or the new one. It
// follows links and keeps the permissions of an old file; a new one is private to the user. False when there is no
// permission or no space; the old file is then unchanged. One writer at a time.
bool replaceFile(const QByteArray &path, const QByteArray &contents);

// Whether a program that was killed while it replaced the file at `path` has left what it had written; removes that.
bool hasUnfinished(const QByteArray &path);
void removeUnfinished(const QByteArray &path);
