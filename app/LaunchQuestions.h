// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

struct Platform;

// The questions that the program may ask at its launch. Each returns the user's answer, or nothing when the user quit
// the program instead.
namespace LaunchQuestions {

// Asks for the permission to see drags in other programs. True when the user wants to open the system's settings.
std::optional<bool> askForAccessibility(Platform &platform);

// Asks whether to look for a newer version at each launch.
std::optional<bool> askAboutUpdateChecks(Platform &platform);

} // namespace LaunchQuestions
