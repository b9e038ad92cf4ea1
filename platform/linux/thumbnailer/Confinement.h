// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// What a helper keeps of a program's rights, for all its threads and for ever. docs/helpers.md says it in prose.
struct Confinement {
    bool opensFiles = false;           // may open files for reading
    bool writesFiles = false;          // may make, write and replace files
    bool awaitsWriters = false;        // may add to an inotify queue that it was given
    std::vector<std::string> readable; // with Landlock: the only folders it reads in, where there are any
    std::vector<std::string> writable; // with Landlock: the only folders it writes in
    bool readsEverywhere = false;      // Landlock leaves reading alone
    std::uint64_t memory = 0;          // bytes of its own; the libraries that it shares are beside
};

// What every helper does first: it ends with the shelf, leaves no core file, and holds no descriptor from `first` on.
void beginHelper(int first);

// The part that holds for this thread and those it starts; to be called before any other thread is.
bool confineFileSystem(const Confinement &confinement);

// The rest, for all threads. False when the kernel grants less than that; the helper is not to go on then.
bool confineProcess(const Confinement &confinement);
