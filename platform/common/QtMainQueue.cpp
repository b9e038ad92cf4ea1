// SPDX-License-Identifier: MIT
#include "platform/common/QtMainQueue.h"

#include <QPointer>
#include <QTimer>

#include <cmath>

namespace {

constexpr double kMillisecondsPerSecond = 1000.0;
constexpr double kNanosecondsPerSecond = 1e9;
// QTimer counts milliseconds in an int. A longer wait, from an absurd setting, is limited to that.
constexpr double kLongestWait = 2.0e9;

class QtTimer : public Timer {
public:
    explicit QtTimer(QTimer *source)
        : timer(source)
    {
    }

    void invalidate() override
    {
        if (timer) {
            timer->stop();
            timer->deleteLater();
            timer = nullptr;
        }
    }

    bool isValid() const override { return timer && timer->isActive(); }

private:
    QPointer<QTimer> timer;
};

enum class Repeats { No, Yes };

std::shared_ptr<Timer> startTimer(QObject *receiver, double seconds, Repeats repeats, std::function<void()> work)
{
    auto *timer = new QTimer(receiver);
    timer->setTimerType(Qt::PreciseTimer);
    timer->setSingleShot(repeats == Repeats::No);
    timer->setInterval(static_cast<int>(std::lround(std::min(seconds * kMillisecondsPerSecond, kLongestWait))));
    QObject::connect(timer, &QTimer::timeout, receiver, [timer, repeats, work = std::move(work)] {
        // The work may invalidate the timer, which destroys this closure.
        const auto keep = work;
        if (repeats == Repeats::No)
            timer->deleteLater();
        keep();
    });
    timer->start();
    return std::make_shared<QtTimer>(timer);
}

} // namespace

QtMainQueue::QtMainQueue()
{
    clock.start();
}

void QtMainQueue::async(std::function<void()> work)
{
    QMetaObject::invokeMethod(&receiver, std::move(work), Qt::QueuedConnection);
}

std::shared_ptr<Timer> QtMainQueue::after(double seconds, std::function<void()> work)
{
    return startTimer(&receiver, seconds, Repeats::No, std::move(work));
}

std::shared_ptr<Timer> QtMainQueue::every(double seconds, std::function<void()> work)
{
    return startTimer(&receiver, seconds, Repeats::Yes, std::move(work));
}

double QtMainQueue::now() const
{
    return static_cast<double>(clock.nsecsElapsed()) / kNanosecondsPerSecond;
}

QDateTime QtMainQueue::currentDate() const
{
    return QDateTime::currentDateTime();
}
