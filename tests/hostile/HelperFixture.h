// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/helpers/FileHelpers.h"
#include "platform/linux/thumbnails/LinuxThumbnailGenerator.h"
#include "tests/support/SampleFiles.h"
#include "tests/support/VirtualPlatform.h"

#include <QFile>
#include <QTest>

#include <algorithm>
#include <csignal>

using namespace Qt::StringLiterals;

// The services that own the helpers, on virtual time, so that the test decides when something takes too long.
struct HelperFixture {
    static constexpr int kPatience = 120'000; // milliseconds

    // Requests a picture. Returns the index of its answer in `answers`.
    size_t request(const QByteArray &path)
    {
        const size_t place = answers.size();
        answers.emplace_back();
        generator.generate(
            SampleFiles::url(path), 72, 1,
            [this, place](std::optional<Thumbnail> thumbnail) {
                answers[place].isThere = true;
                answers[place].image = thumbnail ? thumbnail->image : QImage();
            },
            [this, place] { answers[place].isDelayed = true; });
        return place;
    }

    bool waitFor(size_t place)
    {
        return QTest::qWaitFor([this, place] { return answers[place].isThere; }, kPatience);
    }

    bool hasPicture(size_t place) { return waitFor(place) && !answers[place].image.isNull(); }

    // Advances the time until there is an answer. Returns the seconds that this took, negative if no answer came.
    double secondsUntil(size_t place, double most)
    {
        for (double seconds = 0; seconds <= most; seconds += 0.5) {
            if (answers[place].isThere)
                return seconds;
            // Messages that are in transit are handled first.
            QTest::qWait(1);
            queue.advance(0.5);
        }
        return -1;
    }

    // Whether the only helper for pictures has begun to work, as its process state shows.
    static qint64 memoryPeak(pid_t process)
    {
        QFile file(u"/proc/%1/status"_s.arg(process));
        if (!file.open(QIODevice::ReadOnly))
            return -1;
        for (const QByteArray &line : file.readAll().split('\n')) {
            if (line.startsWith("VmHWM:"))
                return line.mid(6).trimmed().split(' ').first().toLongLong() * 1024;
        }
        return -1;
    }

    struct Answer {
        bool isThere = false;
        bool isDelayed = false;
        QImage image;
    };

    SampleFiles samples;
    VirtualMainQueue queue;
    std::deque<Answer> answers;
    std::shared_ptr<FileHelpers> files = std::make_shared<FileHelpers>(queue);
    LinuxThumbnailGenerator generator{queue, files, samples.path("cache/thumbnails")};
};
