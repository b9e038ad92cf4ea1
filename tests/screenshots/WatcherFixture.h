// SPDX-License-Identifier: MIT
#pragma once

#include "screenshots/ScreenshotWatcher.h"
#include "settings/AppSettings.h"
#include "tests/support/VirtualPlatform.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

// A watcher on a virtual platform, with its own Desktop folder.
struct WatcherFixture {
    WatcherFixture()
        : desktop(root.path() + u"/Desktop"_s)
    {
        QDir().mkpath(desktop);
        watcher.emplace(settings, streams, queue, QUrl::fromLocalFile(desktop));
        watcher->onNewScreenshot = [this](const QUrl &file) { reported.append(file.fileName()); };
    }

    QUrl url(const QString &name) const { return QUrl::fromLocalFile(desktop + QLatin1Char('/') + name); }

    void create(const QString &name, double age = 0)
    {
        QFile file(url(name).toLocalFile());
        QVERIFY(file.open(QFile::WriteOnly));
        setAge(name, age);
    }

    void setAge(const QString &name, double age)
    {
        streams.creationDates[url(name)] = queue.currentDate().addMSecs(-qRound64(age * 1000));
    }

    // Lets every running stream report a change of the folder, and lets the program react.
    void change()
    {
        streams.send();
        queue.runPending();
    }

    void remove(const QString &name) const { QVERIFY(QFile::remove(url(name).toLocalFile())); }

    // Waits until the next change of the folder gets a new date.
    void awaitClockTick() const
    {
        const QString probe = root.filePath(u"probe"_s);
        const auto changeOf = [](const QString &path) { return QFileInfo(path).metadataChangeTime(); };
        const auto isLater = [&] {
            QFile::remove(probe);
            return QFile(probe).open(QFile::WriteOnly) && changeOf(probe) > changeOf(desktop);
        };
        QTRY_VERIFY(isLater());
    }

    QStringList takeReported() { return std::exchange(reported, {}); }

    VirtualPlatform virtualPlatform;
    VirtualMainQueue &queue = virtualPlatform.mainQueue;
    VirtualFileEventStreams &streams = virtualPlatform.fileEventStreams;
    AppSettings settings{virtualPlatform.userDefaults, virtualPlatform.colorArchive, virtualPlatform.appearance};
    QTemporaryDir root;
    QString desktop;
    QStringList reported;
    std::optional<ScreenshotWatcher> watcher;
};

inline const QString kShot = u"shot.png"_s;
inline const QStringList kStopped = {u"start"_s, u"stop"_s, u"invalidate"_s};
