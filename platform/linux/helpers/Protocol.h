// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

// The messages between this program and its helpers.
//
//     shelf --FileQuestion--> parklet-files --picture and descriptors--> parklet-thumbnailer
//       ^----- FileReport --------'                                            |
//       ^----- Begun, PictureReport -------------------------------------------'
//
// The shelf never has a descriptor of a user's file, because closing one can block on a file system that does not
// answer.

// The first descriptors of a helper.
constexpr int kShelfSocket = 3;
constexpr int kPicturesSocket = 4; // of parklet-thumbnailer: it receives orders here

enum class FileQuestion : std::uint8_t {
    Look,  // find out the file's kind, and read its first bytes if requested
    Make,  // open the file and its cache entries, and pass them on
    Watch, // add an inotify watch for its writer
    Keep,  // write a cache entry
};

enum class FileKind : std::uint8_t { Missing, Regular, Folder, Fifo, Socket, CharacterDevice, BlockDevice };

// The result of Make.
enum class Passed : std::uint8_t {
    No, // the file cannot be opened
    Yes,
    Lost, // the thumbnailer has ended
};

enum class PictureTask : std::uint8_t {
    Whole,     // from the cache, else from the file
    CacheOnly, // from the cache, into which the desktop's thumbnailer has just put it
    Drawing,   // an SVG drawing
};

enum class PictureNews : std::uint8_t { Begun, Report };

enum class PictureOutcome : std::uint8_t {
    Made,     // a picture, from the cache or complete
    Partial,  // the file ends before its picture does
    Broken,   // the file holds no picture that can be decoded
    Failed,   // the cache notes an earlier failure
    GivenUp,  // too slow or unreadable, which says nothing about the contents
    TooLarge, // it needs more memory than the helper may use
    Foreign,  // no picture of a known format
};

// The state of a file, as it is sent.
struct FileStateRecord {
    std::int64_t size = 0;
    std::int64_t seconds = 0;
    std::int64_t nanoseconds = 0;

    bool operator==(const FileStateRecord &other) const = default;
};

constexpr int kLongestSide = 2'048; // pixels; of a picture that is sent
