// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <functional>
#include <memory>

// Whether the main loop is in its default mode: no alert or drag turns a loop of its own inside it, and no menu is
// open.
bool isDefaultMode();

// Calls `work` on the main thread when the main loop is next about to rest in its default mode, and perhaps again until
// the answer is let go, which `work` may do. Wakes nobody.
std::unique_ptr<QObject> whenDefaultMode(std::function<void()> work);
