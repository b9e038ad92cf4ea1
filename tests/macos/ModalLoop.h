// SPDX-License-Identifier: MIT
#pragma once

// A modal loop of AppKit's looks whether it has been stopped only after an event, and a timer is none.

// Gives it an event that means nothing.
void wakeModalLoop();

// Ends it as if nothing had been chosen.
void abortModalLoop();
