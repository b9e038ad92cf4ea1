// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/thumbnails/LinuxThumbnailGenerator.h"
#include "tests/platform/thumbnails/DiskCache.h"
#include "tests/support/SampleFiles.h"
#include "tests/support/VirtualPlatform.h"

#include <QSet>
#include <QTest>

// The results of the completions.
class Answers {
public:
    ThumbnailGenerator::Completion next()
    {
        return [this](std::optional<Thumbnail> thumbnail) {
            images.append(thumbnail ? std::optional(thumbnail->image) : std::nullopt);
            points.append(thumbnail ? thumbnail->size : QSizeF());
        };
    }

    qsizetype count() const { return images.size(); }

    std::optional<QImage> last() const { return images.isEmpty() ? std::nullopt : images.last(); }

    // The number of different pictures among them.
    qsizetype different() const
    {
        QSet<qint64> keys;
        for (const auto &image : images)
            keys.insert(image ? image->cacheKey() : 0);
        return keys.size();
    }

    QList<QSize> sizes() const
    {
        QList<QSize> list;
        for (const auto &image : images)
            list.append(image.value_or(QImage()).size());
        return list;
    }

    QList<QSizeF> points;

private:
    QList<std::optional<QImage>> images;
};

inline constexpr int kPatience = 20'000; // milliseconds

// A generator on virtual time, with files and a cache of its own.
struct GeneratorFixture {
    SampleFiles samples;
    VirtualMainQueue queue;
    Answers answers;
    QByteArray cacheFolder = samples.path("cache/thumbnails");
    DiskCache cache{cacheFolder};
    LinuxThumbnailGenerator generator{queue, std::make_shared<FileHelpers>(queue), cacheFolder};

    void request(const QByteArray &path, double edge = 72, double scale = 1)
    {
        generator.generate(SampleFiles::url(path), edge, scale, answers.next());
    }

    // Waits until there are `count` answers, one of them for an unreadable file whose writer is then waited for.
    void waitForWriter(qsizetype count)
    {
        QTRY_COMPARE_WITH_TIMEOUT(queue.pendingCount(), 1, kPatience);
        QCOMPARE(answers.count(), count);
        queue.runPending();
        QTRY_COMPARE_WITH_TIMEOUT(generator.awaitedWriters(), 1, kPatience);
    }

    // Sets a file's modification time to a moment before the queue's time.
    void changeNow(const QByteArray &path) const
    {
        SampleFiles::setModified(path, queue.currentDate().toSecsSinceEpoch() - 1, 900'000'000);
    }
};

#define VERIFY_ANSWERS(f, number) QTRY_COMPARE_WITH_TIMEOUT((f).answers.count(), qsizetype(number), kPatience)
