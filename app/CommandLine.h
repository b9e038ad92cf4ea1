// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

// What the program prints instead of starting, as its command line requests.
struct CommandLineAnswer {
    std::string output; // for the standard output
    std::string error;  // for the standard error
    int exitCode = 0;

    bool operator==(const CommandLineAnswer &) const = default;
};

// Nothing when the program should start. `arguments` has no program name. Arguments that Qt, a session manager or the
// system adds are ignored.
std::optional<CommandLineAnswer> answerCommandLine(const std::vector<std::string> &arguments);

// Whether the shelf is to be shown once the program has started.
bool asksForShelf(const std::vector<std::string> &arguments);

// The answer of a program that cannot start. `reason` is in English, is translated in `context`, and has `detail` in
// the place of its %1.
CommandLineAnswer cannotStart(const char *context, const char *reason, const std::string &detail);

// Prints the answer and returns the exit code, which is also 1 when printing fails.
int give(const CommandLineAnswer &answer);
