// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

// Runs `modal`, which runs a modal loop of AppKit, inside a new event loop of Qt. After the end of a Qt loop, Qt may
// still stop the next AppKit loop; it forgets that when a new Qt loop begins.
void runModally(const std::function<void()> &modal);
