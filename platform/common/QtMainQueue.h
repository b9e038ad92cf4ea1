// SPDX-License-Identifier: MIT
#pragma once

#include "platform/MainQueue.h"

#include <QElapsedTimer>
#include <QObject>

// The main queue on Qt's event loop.
class QtMainQueue : public MainQueue {
public:
    QtMainQueue();

    void async(std::function<void()> work) override;
    std::shared_ptr<Timer> after(double seconds, std::function<void()> work) override;
    std::shared_ptr<Timer> every(double seconds, std::function<void()> work) override;
    double now() const override;
    QDateTime currentDate() const override;

private:
    QObject receiver; // lives on the main thread; queued calls to it run there
    QElapsedTimer clock;
};
