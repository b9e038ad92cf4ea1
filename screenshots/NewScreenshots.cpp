// SPDX-License-Identifier: MIT
#include "screenshots/NewScreenshots.h"

#include <cerrno>
#include <memory>
#include <utility>

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
        // Most files of a crowded Desktop are no screenshots: look at the name before allocating anything.
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
    // Collect first: a set that grows name by name rehashes again and again.
    QList<QByteArray> names;
    if (!listScreenshots(
            folder, [&names](std::string_view name) { names.append(QByteArray(name.data(), qsizetype(name.size()))); }))
        return {};
    QSet<QByteArray> found;
    found.reserve(names.size());
    for (QByteArray &name : names)
        found.insert(std::move(name));
    return found;
}

QList<QByteArray> refreshNames(QSet<QByteArray> &known, const QByteArray &folder)
{
    // Usually no file has gone. Then counting the known names is enough, and no set is built.
    QList<QByteArray> added;
    qsizetype count = 0;
    const bool isWhole = listScreenshots(folder, [&known, &added, &count](std::string_view name) {
        if (known.contains(QByteArray::fromRawData(name.data(), qsizetype(name.size()))))
            ++count;
        else
            added.append(QByteArray(name.data(), qsizetype(name.size())));
    });
    if (isWhole && count == known.size()) {
        for (const QByteArray &name : std::as_const(added))
            known.insert(name);
        return added;
    }
    // Otherwise list the folder once more.
    const QSet<QByteArray> before = std::exchange(known, screenshotNames(folder));
    const QSet<QByteArray> now = known - before;
    return {now.cbegin(), now.cend()};
}

bool isRecent(const QDateTime &creationDate, const QDateTime &now)
{
    return creationDate.msecsTo(now) < kAgeLimit;
}
