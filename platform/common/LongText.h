// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// Whether an alert is to let its informative text scroll, so that its buttons stay on the screen. What comes from
// outside can be of any length.
inline bool isLongText(const QString &text)
{
    constexpr int kCharacters = 600;
    constexpr int kLines = 12;
    return text.size() > kCharacters || text.count(QLatin1Char('\n')) > kLines;
}
