// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

// What the program prints instead of starting, because of its command line.
struct CommandLineAnswer {
    std::string output; // for the standard output
    std::string error;  // for the standard error
    int exitCode = 0;

    bool operator==(const CommandLineAnswer &) const = default;
};

// Without a value the program starts. `arguments` are those after the program's name; what Qt, a session manager or the
// system adds to a command line is passed over.
std::optional<CommandLineAnswer> answerCommandLine(const std::vector<std::string> &arguments);

// The answer of a program that cannot start: `reason` in the sources' language, translated in `context`, with `detail`
// in the place of its %1.
CommandLineAnswer cannotStart(const char *context, const char *reason, const std::string &detail);

// Prints the answer, and returns the exit code: also 1 when it could not be printed.
int give(const CommandLineAnswer &answer);
