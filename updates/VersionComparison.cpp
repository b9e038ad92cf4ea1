// SPDX-License-Identifier: MIT
#include "updates/VersionComparison.h"

#include <algorithm>

namespace {

bool isDigit(QChar c)
{
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

// Takes the run of digits at the front of `text`, without its leading zeros.
QStringView takeNumber(QStringView &text)
{
    const auto *const end = std::find_if_not(text.begin(), text.end(), isDigit);
    const auto *const first = std::find_if(text.begin(), end, [](QChar c) { return c != QLatin1Char('0'); });
    const QStringView number(first, end);
    text = QStringView(end, text.end());
    return number;
}

} // namespace

std::weak_ordering compareVersions(QStringView a, QStringView b)
{
    while (!a.isEmpty() && !b.isEmpty()) {
        if (isDigit(a.front()) && isDigit(b.front())) {
            const QStringView left = takeNumber(a);
            const QStringView right = takeNumber(b);
            // Of two numbers without leading zeros the one with more digits is the larger.
            if (left.size() != right.size())
                return left.size() <=> right.size();
            if (const int order = left.compare(right); order != 0)
                return order <=> 0;
        } else {
            if (a.front() != b.front())
                return a.front().unicode() <=> b.front().unicode();
            a = a.mid(1);
            b = b.mid(1);
        }
    }
    return a.size() <=> b.size();
}
