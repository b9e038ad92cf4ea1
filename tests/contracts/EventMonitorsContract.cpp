// SPDX-License-Identifier: MIT
#include "tests/contracts/Contracts.h"
#include "tests/contracts/World.h"

#include <QTest>

class EventMonitorsContract : public QObject {
    Q_OBJECT

public:
    explicit EventMonitorsContract(World &tested)
        : world(tested)
    {
    }

private slots:
    void every_monitor_has_a_token_of_its_own();
    void a_token_is_not_given_out_again();
    void an_unknown_token_is_ignored();

private:
    EventMonitors &eventMonitors() const { return *world.platform().eventMonitors; }

    World &world;
};

void EventMonitorsContract::every_monitor_has_a_token_of_its_own()
{
    const auto dragged = eventMonitors().add(LeftMouseDragged, [] {});
    const auto up = eventMonitors().add(LeftMouseUp, [] {});
    QVERIFY(dragged);
    QVERIFY(up);
    QVERIFY(*dragged != *up);
    eventMonitors().remove(*dragged);
    eventMonitors().remove(*up);
}

void EventMonitorsContract::a_token_is_not_given_out_again()
{
    const auto first = eventMonitors().add(LeftMouseUp, [] {});
    QVERIFY(first);
    eventMonitors().remove(*first);
    const auto second = eventMonitors().add(LeftMouseUp, [] {});
    QVERIFY(second);
    QVERIFY(*first != *second);
    eventMonitors().remove(*second);
}

void EventMonitorsContract::an_unknown_token_is_ignored()
{
    const auto token = eventMonitors().add(LeftMouseUp, [] {});
    QVERIFY(token);
    eventMonitors().remove(*token + 1);
    eventMonitors().remove(*token);
    eventMonitors().remove(*token);
}

std::unique_ptr<QObject> eventMonitorsContract(World &world)
{
    return std::make_unique<EventMonitorsContract>(world);
}

#include "EventMonitorsContract.moc"
