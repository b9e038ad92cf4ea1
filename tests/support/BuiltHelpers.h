// SPDX-License-Identifier: MIT
#pragma once

// Makes the program's services use the helper programs of this build, which are not beside a test.
void useBuiltHelpers();
