// SPDX-License-Identifier: MIT
#pragma once

// Presents the tiles to a screen reader as a list: each item has the name of its file, is described by its path, can be
// selected, and can be pressed like a click. Repeated calls do nothing.
void installShelfAccessibility();
