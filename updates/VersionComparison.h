// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

#include <compare>

// Compares two version strings, in the same way in every locale. Runs of digits (0 to 9, of any length) compare by
// their numeric value, and everything else character by character. A string is newer than its own beginning. So 1.10 is
// newer than 1.9, 1.2.0 is newer than 1.2, and 1.02 is the same as 1.2.
std::weak_ordering compareVersions(QStringView a, QStringView b);
