// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

#include <compare>

// The order of two version strings: runs of digits (0 to 9, of any length) by their numeric value, everything else
// character by character, and a string that continues another one after it. So 1.10 is newer than 1.9, 1.2.0 than
// 1.2, and 1.02 is the same as 1.2. Depends on no locale.
std::weak_ordering compareVersions(QStringView a, QStringView b);
