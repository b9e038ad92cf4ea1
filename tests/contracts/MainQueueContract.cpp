// SPDX-License-Identifier: MIT
#include "tests/contracts/Contracts.h"
#include "tests/contracts/World.h"

#include <QTest>

using namespace Qt::StringLiterals;

class MainQueueContract : public QObject {
    Q_OBJECT

public:
    explicit MainQueueContract(World &tested)
        : world(tested)
    {
    }

private slots:
    void queued_work_runs_later_and_in_order();
    void a_timer_fires_once();
    void a_repeating_timer_fires_until_it_is_invalidated();
    void an_invalidated_timer_never_fires();
    void a_timer_fires_without_its_handle();

private:
    MainQueue &mainQueue() const { return *world.platform().mainQueue; }

    World &world;
};

void MainQueueContract::queued_work_runs_later_and_in_order()
{
    QString order;
    mainQueue().async([&order] { order += QLatin1Char('a'); });
    mainQueue().async([&order] { order += QLatin1Char('b'); });
    QVERIFY(order.isEmpty());
    QVERIFY(world.waitFor([&order] { return order.size() == 2; }));
    QCOMPARE(order, u"ab"_s);
}

void MainQueueContract::a_timer_fires_once()
{
    int calls = 0;
    const double start = mainQueue().now();
    const auto timer = mainQueue().after(0.05, [&calls] { ++calls; });
    QVERIFY(timer->isValid());
    QVERIFY(world.waitFor([&calls] { return calls > 0; }));
    QVERIFY(mainQueue().now() - start >= 0.049);
    QVERIFY(!timer->isValid());
    QCOMPARE(calls, 1);
}

void MainQueueContract::a_repeating_timer_fires_until_it_is_invalidated()
{
    int calls = 0;
    std::shared_ptr<Timer> timer;
    timer = mainQueue().every(0.02, [&calls, &timer] {
        if (++calls == 3)
            timer->invalidate();
    });
    QVERIFY(world.waitFor([&timer] { return !timer->isValid(); }));
    bool later = false;
    mainQueue().after(0.1, [&later] { later = true; });
    QVERIFY(world.waitFor([&later] { return later; }));
    QCOMPARE(calls, 3);
}

void MainQueueContract::an_invalidated_timer_never_fires()
{
    int calls = 0;
    const auto timer = mainQueue().after(0.02, [&calls] { ++calls; });
    timer->invalidate();
    QVERIFY(!timer->isValid());
    bool later = false;
    mainQueue().after(0.1, [&later] { later = true; });
    QVERIFY(world.waitFor([&later] { return later; }));
    QCOMPARE(calls, 0);
}

void MainQueueContract::a_timer_fires_without_its_handle()
{
    const auto calls = std::make_shared<int>(0);
    mainQueue().after(0.02, [calls] { ++*calls; });
    QVERIFY(world.waitFor([calls] { return *calls == 1; }));
}

std::unique_ptr<QObject> mainQueueContract(World &world)
{
    return std::make_unique<MainQueueContract>(world);
}

#include "MainQueueContract.moc"
