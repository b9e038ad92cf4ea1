// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

// A drag source in another program that has sent nothing for so long counts as one without files.
inline constexpr std::chrono::milliseconds kLongestSilence{500};
