// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// Whether an alert lets its informative text scroll, so that its buttons stay on the screen. A text from outside, such
// as that of an update, may have any length.
inline bool isLongText(const QString &text)
{
    constexpr int kCharacters = 600;
    constexpr int kLines = 12;
    return text.size() > kCharacters || text.count(QLatin1Char('\n')) > kLines;
}
