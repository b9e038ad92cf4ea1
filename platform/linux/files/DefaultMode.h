// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <functional>
#include <memory>

// Whether the main loop is in its default mode, as the Mac calls it: no alert or drag runs a nested loop, and no menu
// is open.
bool isDefaultMode();

// Calls `work` on the main thread when the main loop is next about to sleep in its default mode, and possibly again
// until the returned object is destroyed, which `work` may do. Starts no thread and no timer.
std::unique_ptr<QObject> whenDefaultMode(std::function<void()> work);
