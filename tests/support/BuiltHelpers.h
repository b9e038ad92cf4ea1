// SPDX-License-Identifier: MIT
#pragma once

// Makes the program's services use the helper programs of this build, which are in another folder than the test.
void useBuiltHelpers();
