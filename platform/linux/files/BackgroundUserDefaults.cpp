// SPDX-License-Identifier: MIT
#include "platform/linux/files/BackgroundUserDefaults.h"

#include <QCoreApplication>
#include <QMutexLocker>

#include <cstdio>

BackgroundUserDefaults::BackgroundUserDefaults(const QString &path)
    : file(path)
    , reader(path)
    , writer(path)
{
    thread.setMaxThreadCount(1);
    writer.removeUnfinished();
}

BackgroundUserDefaults::~BackgroundUserDefaults()
{
    writer.hurry();
    thread.waitForDone();
    if (!hasFailed)
        return;
    const QString reason = writer.wasLockedOut()
                               ? QCoreApplication::translate("Settings", "another program has locked the folder of %1")
                               : QCoreApplication::translate("Settings", "%1 cannot be written");
    const QString text =
        QCoreApplication::translate("Settings", "The settings were not saved: %1").arg(reason.arg(file));
    std::fprintf(stderr, "parklet: %s\n", text.toLocal8Bit().constData());
}

QVariant BackgroundUserDefaults::object(const QString &key) const
{
    const QMutexLocker locker(&mutex);
    for (const auto *pending : {&waiting, &written}) {
        if (const auto value = pending->constFind(key); value != pending->constEnd())
            return *value;
    }
    if (isFresh)
        return reader.lastObject(key);
    isFresh = moments > 0;
    return reader.object(key);
}

bool BackgroundUserDefaults::set(const QString &key, const QVariant &value)
{
    if (!value.isValid())
        return remove(key);
    const QVariant stored = JsonUserDefaults::asStored(value);
    if (!stored.isValid())
        return false;
    const QMutexLocker locker(&mutex);
    waiting.insert(key, stored);
    if (!std::exchange(isWriting, true))
        thread.start([this] { write(); });
    return true;
}

bool BackgroundUserDefaults::remove(const QString &key)
{
    const QMutexLocker locker(&mutex);
    waiting.insert(key, QVariant());
    if (!std::exchange(isWriting, true))
        thread.start([this] { write(); });
    return true;
}

void BackgroundUserDefaults::synchronize()
{
    constexpr int kGlance = 10; // milliseconds
    while (!thread.waitForDone(kGlance) && !writer.isKeptWaiting()) {
    }
}

void BackgroundUserDefaults::beginMoment() const
{
    const QMutexLocker locker(&mutex);
    ++moments;
}

void BackgroundUserDefaults::endMoment() const
{
    const QMutexLocker locker(&mutex);
    --moments;
    isFresh = isFresh && moments > 0;
}

// A failed write is dropped: the next read returns what is in the file.
void BackgroundUserDefaults::write()
{
    QMutexLocker locker(&mutex);
    while (!waiting.isEmpty()) {
        written = std::exchange(waiting, {});
        locker.unlock();
        const bool saved = writer.set(written);
        locker.relock();
        written.clear();
        hasFailed = !saved;
        isFresh = false;
    }
    isWriting = false;
}
