// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <optional>

// What tells one state of a file's contents from another.
struct FileState {
    qint64 size = 0;
    qint64 modifiedSeconds = 0; // whole seconds since the epoch, as thumbnails are keyed with
    qint64 modifiedNanoseconds = 0;

    // When the contents were last changed, in seconds since the epoch.
    double modified() const { return static_cast<double>(modifiedSeconds) + 1e-9 * double(modifiedNanoseconds); }

    bool operator==(const FileState &other) const = default;
};

// A regular file open for reading, known by the bytes of its path.
class RegularFile {
public:
    // Nothing unless `path` leads to a regular file that can be read. Never blocks on a FIFO or device, nor opens one.
    static std::optional<RegularFile> open(const QByteArray &path);

    // The same for what is open already; it is this object's from then on, and closed if it is none.
    static std::optional<RegularFile> adopt(int descriptor);

    RegularFile(RegularFile &&other) noexcept;
    RegularFile &operator=(RegularFile &&) = delete;
    ~RegularFile();

    // For reading by others; it stays this object's.
    int descriptor() const { return fd; }

    // The file's state when it was opened.
    const FileState &state() const { return opened; }

    // The open file's state now.
    FileState currentState() const;

    // Up to `length` bytes from `offset`; fewer at the end of the file or when it cannot be read.
    QByteArray read(qint64 offset, qint64 length) const;

private:
    RegularFile(int descriptor, const FileState &state);

    int fd;
    FileState opened;
};
