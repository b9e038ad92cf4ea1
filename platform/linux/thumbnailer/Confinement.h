// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// The rights that a helper keeps, for all its threads until it ends. docs/helpers.md describes them.
struct Confinement {
    bool opensFiles = false;    // may open files for reading
    bool writesFiles = false;   // may make, write and replace files
    bool awaitsWriters = false; // may add watches to an inotify queue that it has received
    std::vector<std::string>
        readable; // with Landlock: the only folders in which it may read; missing folders are ignored
    std::vector<std::string> writable; // with Landlock: the only folders in which it may write
    bool readsEverywhere = false;      // Landlock does not restrict reading
    std::uint64_t memory = 0;          // bytes, without the shared libraries
};

// Every helper calls this first. The helper then ends with the shelf, leaves no core file, and has no open descriptor
// from number `first` on.
void beginHelper(int first);

// Restricts the file system for this thread and the threads that it starts. Call it before any other thread starts.
bool confineFileSystem(const Confinement &confinement);

// Applies the other restrictions to all threads. False when the kernel cannot; the helper must end then.
bool confineProcess(const Confinement &confinement);
