// SPDX-License-Identifier: MIT
#include "screenshots/NewScreenshots.h"

#include <cerrno>
#include <memory>

#include <dirent.h>

namespace {

constexpr std::string_view kSuffix = ".png";
constexpr qint64 kAgeLimit = 10'000; // milliseconds

// Calls `take` with each name in `folder` that can be a screenshot. False when the folder could not be read to its end.
template<typename Take>
bool listScreenshots(const QByteArray &folder, const Take &take)
{
    const std::unique_ptr<DIR, int (*)(DIR *)> directory(opendir(folder.constData()), closedir);
    if (!directory)
        return false;
    while (true) {
        errno = 0;
        const dirent *entry = readdir(directory.get());
        if (!entry)
            return errno == 0;
        // Most files of a crowded Desktop are no screenshots: look at the name before making anything of it.
        const std::string_view name(entry->d_name);
        if (isScreenshotName(name))
            take(name);
    }
}

} // namespace

bool isScreenshotName(std::string_view name)
{
    return name.ends_with(kSuffix);
}

QSet<QByteArray> screenshotNames(const QByteArray &folder)
{
    // Collected first: a set that grows name by name is made anew again and again.
    QList<QByteArray> names;
    if (!listScreenshots(
            folder, [&names](std::string_view name) { names.append(QByteArray(name.data(), qsizetype(name.size()))); }))
        return {};
    return {names.cbegin(), names.cend()};
}

QList<QByteArray> refreshNames(QSet<QByteArray> &known, const QByteArray &folder)
{
    QList<QByteArray> still;
    QList<QByteArray> added;
    // Nearly all names are known already, and none of those is made anew.
    const bool isWhole = listScreenshots(folder, [&known, &still, &added](std::string_view name) {
        const auto found = known.constFind(QByteArray::fromRawData(name.data(), qsizetype(name.size())));
        if (found != known.constEnd()) {
            still.append(*found);
        } else {
            added.append(QByteArray(name.data(), qsizetype(name.size())));
            known.insert(added.last());
        }
    });
    if (!isWhole) {
        known.clear();
        return {};
    }
    if (still.size() + added.size() != known.size()) {
        known = QSet<QByteArray>(still.cbegin(), still.cend());
        known.unite(QSet<QByteArray>(added.cbegin(), added.cend()));
    }
    return added;
}

bool isRecent(const QDateTime &creationDate, const QDateTime &now)
{
    return creationDate.msecsTo(now) < kAgeLimit;
}
