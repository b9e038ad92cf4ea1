// SPDX-License-Identifier: MIT
#include "platform/linux/files/BackgroundUserDefaults.h"

#include <QMutexLocker>

BackgroundUserDefaults::BackgroundUserDefaults(const QString &file)
    : reader(file)
    , writer(file)
{
    thread.setMaxThreadCount(1);
}

BackgroundUserDefaults::~BackgroundUserDefaults()
{
    thread.waitForDone();
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
    thread.waitForDone();
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
        writer.set(written);
        locker.relock();
        written.clear();
        isFresh = false;
    }
    isWriting = false;
}
