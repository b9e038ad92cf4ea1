// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

class FileHelpers;
struct Platform;

// Whether this session is one of Wayland's in which panels of its own kind can be shown. Needs no QApplication.
bool offersNativeWayland();

// Settles for Qt, before the QApplication is made, that it runs on Wayland.
void prepareNativeWayland();

// Adds the services that are Wayland's. False when Qt does not run on it after all; nothing has been added then. The
// main queue, the appearance and the services of no display are there already.
bool addNativeWayland(Platform &platform, const std::shared_ptr<FileHelpers> &files);
