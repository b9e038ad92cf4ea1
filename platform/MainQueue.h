// SPDX-License-Identifier: MIT
#pragma once

#include "platform/WhileAlive.h"

#include <QDateTime>
#include <QObject>

#include <functional>
#include <memory>

// A scheduled call. It runs whether or not its handle is kept; only invalidate() stops it.
class Timer {
public:
    virtual ~Timer() = default;

    virtual void invalidate() = 0;

    // False after invalidate(), and for a single call also after it has run.
    virtual bool isValid() const = 0;
};

// The main thread's queue of work and its clock. All deferred work goes through here, so that a test controls the time.
class MainQueue {
public:
    virtual ~MainQueue() = default;

    // Runs `work` on the main thread in a later turn of its loop, in the order queued. May be called on any thread.
    virtual void async(std::function<void()> work) = 0;

    // The same, unless `context` is deleted before. Main thread only.
    void async(const QObject *context, std::function<void()> work) { async(whileAlive(context, std::move(work))); }

    // Runs `work` once, `seconds` from now. Main thread only.
    virtual std::shared_ptr<Timer> after(double seconds, std::function<void()> work) = 0;

    // Runs `work` every `seconds`, first after one interval. Main thread only.
    virtual std::shared_ptr<Timer> every(double seconds, std::function<void()> work) = 0;

    // Monotonic seconds, for durations.
    virtual double now() const = 0;

    // Wall-clock time, for comparing with file dates.
    virtual QDateTime currentDate() const = 0;
};
