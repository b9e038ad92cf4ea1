// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

class FileHelpers;
struct Platform;

// Whether this is a Wayland session whose compositor offers what native panels need. Needs no QApplication.
bool offersNativeWayland();

// Makes Qt use Wayland. Call it before the QApplication exists.
void prepareNativeWayland();

// Adds the services for Wayland. False when Qt does not run on Wayland after all; then nothing was added. `platform`
// already has the main queue, the appearance and the services that need no display.
bool addNativeWayland(Platform &platform, const std::shared_ptr<FileHelpers> &files);
