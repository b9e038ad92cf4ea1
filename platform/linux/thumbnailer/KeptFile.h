// SPDX-License-Identifier: MIT
#pragma once

#include <string>

// Makes the folder and its parents, readable by the user only. False when that fails.
bool makeFolder(const std::string &path);

// Writes `bytes` to the file at `path`, and makes its folder if necessary. Other programs may read the file at any
// moment, so it is replaced atomically. False when that fails; an existing file is unchanged then.
bool keepFile(const std::string &path, const std::string &bytes);
