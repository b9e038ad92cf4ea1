// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

// What this program and its helpers say to each other.
//
//     shelf --FileQuestion--> parklet-files --picture and descriptors--> parklet-thumbnailer
//       ^----- FileReport --------'                                            |
//       ^----- Begun, PictureReport -------------------------------------------'
//
// The shelf never holds a descriptor of a user's file: closing one can wait for a file system that does not answer.

// The first descriptors of a helper.
constexpr int kShelfSocket = 3;
constexpr int kPicturesSocket = 4; // of parklet-thumbnailer: where pictures to be made come from

enum class FileQuestion : std::uint8_t {
    Look,  // its kind, and its first bytes where they are asked for
    Make,  // open it and what the cache has of it, and pass both on
    Watch, // tell inotify to wait for its writer
    Keep,  // write an entry of the cache
};

enum class FileKind : std::uint8_t { Missing, Regular, Folder, Fifo, Socket, CharacterDevice, BlockDevice };

// What became of a Make.
enum class Passed : std::uint8_t {
    No, // there is no file to open
    Yes,
    Lost, // the thumbnailer has ended
};

enum class PictureTask : std::uint8_t {
    Whole,     // out of the cache, else out of the file
    CacheOnly, // the desktop's thumbnailer says that it has just put it there
    Drawing,   // an SVG drawing
};

enum class PictureNews : std::uint8_t { Begun, Report };

enum class PictureOutcome : std::uint8_t {
    Made,     // a picture, out of the cache or whole
    Partial,  // the file ends before its picture does
    Broken,   // the file holds no picture that can be decoded
    Failed,   // the cache says that this was found out before
    GivenUp,  // too slow, or unreadable; says nothing about what the file holds
    TooLarge, // for what the helper may take of memory
    Foreign,  // no picture of a format that is known here
};

// What the two are told about a file.
struct FileStateRecord {
    std::int64_t size = 0;
    std::int64_t seconds = 0;
    std::int64_t nanoseconds = 0;

    bool operator==(const FileStateRecord &other) const = default;
};

constexpr int kLongestSide = 2'048; // pixels of a picture that is sent
