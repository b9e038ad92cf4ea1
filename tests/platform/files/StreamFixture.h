// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/files/LinuxFileEventStreams.h"
#include "tests/support/VirtualPlatform.h"

#include <QAbstractEventDispatcher>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <functional>
#include <optional>

using namespace Qt::StringLiterals;

constexpr double kLatency = 0.5;
constexpr int kPatience = 20'000; // milliseconds

// Streams of a temporary folder, and a virtual clock.
struct StreamFixture {
    // Starts a stream of `name` in the temporary folder.
    std::shared_ptr<FileEventStream> follow(const QString &name)
    {
        auto stream = streams->create(path(name), kLatency, [this] { ++calls; });
        stream->start();
        return stream;
    }

    QString path(const QString &name) const { return root.path() + QLatin1Char('/') + name; }
    void makeFolder(const QString &name) const { QVERIFY(QDir().mkpath(path(name))); }
    void removeFolder(const QString &name) const { QVERIFY(QDir(path(name)).removeRecursively()); }
    void rename(const QString &from, const QString &to) const { QVERIFY(QDir().rename(path(from), path(to))); }
    void link(const QString &target, const QString &name) const { QVERIFY(QFile::link(target, path(name))); }
    void makeFile(const QString &name) const
    {
        QFile file(path(name));
        QVERIFY(file.open(QFile::WriteOnly));
    }

    // Lets the kernel report the changes, and the latency pass. Returns the number of calls.
    int settle()
    {
        const int before = calls;
        [this] { QTRY_COMPARE_WITH_TIMEOUT(queue.timerCount(), 1, kPatience); }();
        queue.advance(kLatency);
        return calls - before;
    }

    // Whether a new file in `name` causes one call.
    bool isFollowed(const QString &name)
    {
        makeFile(name + u"/file %1.png"_s.arg(files++));
        return settle() == 1;
    }

    // Does what programs often do in a folder that is not followed.
    void comeAndGoIn(const QString &folder) const
    {
        makeFile(folder + u"file"_s);
        rename(folder + u"file"_s, folder + u"other"_s);
        QVERIFY(QFile::setPermissions(path(folder + u"other"_s), QFile::ReadOwner));
        QVERIFY(QFile::remove(path(folder + u"other"_s)));
        makeFolder(folder + u"folder"_s);
        removeFolder(folder + u"folder"_s);
    }

    // Runs `work` in a nested event loop, as an alert or a drag runs one, and lets the main loop continue until it is
    // idle.
    static void inLoopWithin(const std::function<void()> &work)
    {
        QEventLoop main;
        QTimer::singleShot(0, &main, [&main, &work] {
            QEventLoop within;
            QTimer::singleShot(0, &within, [&within, &work] {
                work();
                within.quit();
            });
            within.exec();
            QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, &main,
                             [&main] { QTimer::singleShot(0, &main, &QEventLoop::quit); });
        });
        main.exec();
    }

    QTemporaryDir root;
    VirtualMainQueue queue;
    std::optional<LinuxFileEventStreams> streams{queue};
    int calls = 0;

private:
    int files = 0;
};

inline const QString kDesktop = u"Desktop"_s;
