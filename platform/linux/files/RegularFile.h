// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <optional>

// Identifies one state of a file's contents.
struct FileState {
    qint64 size = 0;
    qint64 modifiedSeconds = 0; // whole seconds since the epoch, as in the thumbnail cache
    qint64 modifiedNanoseconds = 0;

    // The time of the last change of the contents, in seconds since the epoch.
    double modified() const { return static_cast<double>(modifiedSeconds) + 1e-9 * double(modifiedNanoseconds); }

    bool operator==(const FileState &other) const = default;
};

// A regular file that is open for reading.
class RegularFile {
public:
    // Opens the file at `path`. Nothing unless it is a regular file that can be read. Never opens a FIFO or device, and
    // never blocks on one.
    static std::optional<RegularFile> open(const QByteArray &path);

    // The same for a file that is already open. Takes the descriptor, and closes it on failure.
    static std::optional<RegularFile> adopt(int descriptor);

    RegularFile(RegularFile &&other) noexcept;
    RegularFile &operator=(RegularFile &&) = delete;
    ~RegularFile();

    // For reading by others. This object keeps owning it.
    int descriptor() const { return fd; }

    // The file's state when it was opened.
    const FileState &state() const { return opened; }

    // The open file's state now.
    FileState currentState() const;

    // Reads up to `length` bytes from `offset`. Returns fewer at the end of the file and on an error.
    QByteArray read(qint64 offset, qint64 length) const;

private:
    RegularFile(int descriptor, const FileState &state);

    int fd;
    FileState opened;
};
