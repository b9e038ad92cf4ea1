// SPDX-License-Identifier: MIT
#pragma once

// Lets a screen reader meet the tiles as a list: each item named as its file, described by its path, selectable and
// pressed as by a click. Call it any number of times.
void installShelfAccessibility();
