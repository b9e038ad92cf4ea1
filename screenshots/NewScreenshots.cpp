// SPDX-License-Identifier: MIT
#include "screenshots/NewScreenshots.h"

#include <cerrno>
#include <memory>

#include <dirent.h>

namespace {

constexpr std::string_view kSuffix = ".png";
constexpr qint64 kAgeLimit = 10'000; // milliseconds

} // namespace

bool isScreenshotName(std::string_view name)
{
    return name.ends_with(kSuffix);
}

QSet<QByteArray> screenshotNames(const QByteArray &folder)
{
    const std::unique_ptr<DIR, int (*)(DIR *)> directory(opendir(folder.constData()), closedir);
    if (!directory)
        return {};
    // Collected first: a set that grows name by name is made anew again and again.
    QList<QByteArray> names;
    while (true) {
        errno = 0;
        const dirent *entry = readdir(directory.get());
        if (!entry)
            break;
        // Most files of a crowded Desktop are no screenshots: look at the name before making anything of it.
        if (isScreenshotName(entry->d_name))
            names.append(QByteArray(entry->d_name));
    }
    return errno == 0 ? QSet<QByteArray>(names.cbegin(), names.cend()) : QSet<QByteArray>();
}

QList<QByteArray> newNames(const QSet<QByteArray> &current, const QSet<QByteArray> &known)
{
    QList<QByteArray> names;
    for (const QByteArray &name : current) {
        if (!known.contains(name))
            names.append(name);
    }
    return names;
}

bool isRecent(const QDateTime &creationDate, const QDateTime &now)
{
    return creationDate.msecsTo(now) < kAgeLimit;
}
