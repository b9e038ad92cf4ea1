// SPDX-License-Identifier: MIT
#pragma once

#include <string>

// Makes the folder and those above it, for the user alone. False when it cannot be made.
bool makeFolder(const std::string &path);

// Writes `bytes` to the file at `path`, whose folder is made when it is not there. The file appears whole or not at
// all: other programs read it at any moment. False when it could not be written; an earlier one is then as it was.
bool keepFile(const std::string &path, const std::string &bytes);
