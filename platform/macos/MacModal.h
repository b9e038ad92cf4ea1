// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

// Runs `modal`, which runs a modal loop of AppKit's own, in a turn of a new loop of Qt's, and returns with it. When a
// loop of Qt's has just ended, Qt still has to stop what AppKit runs for it, and would stop that modal loop instead; it
// forgets this when a new one begins.
void runModally(const std::function<void()> &modal);
