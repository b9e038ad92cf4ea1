// SPDX-License-Identifier: MIT
#include "tests/contracts/Contracts.h"
#include "tests/contracts/World.h"

#include <QTest>

using namespace Qt::StringLiterals;

class AlertsContract : public QObject {
    Q_OBJECT

public:
    explicit AlertsContract(World &tested)
        : world(tested)
    {
    }

private slots:
    void the_chosen_button_is_answered_by_its_number();
    void the_check_box_is_off_until_the_user_turns_it_on();
    void without_a_check_box_none_is_on();
    void a_text_of_any_length_can_be_answered();
    void the_main_loop_turns_meanwhile();

private:
    Alerts &alerts() const { return *world.platform().alerts; }

    World &world;
};

namespace {

Alert question()
{
    Alert alert;
    alert.messageText = u"Does this alert go away by itself?"_s;
    alert.informativeText = u"It belongs to a test."_s;
    alert.buttons = {u"First"_s, u"Second"_s, u"Third"_s};
    return alert;
}

} // namespace

void AlertsContract::the_chosen_button_is_answered_by_its_number()
{
    for (const int button : {0, 1, 2}) {
        world.answerAlert(question(), {.button = button});
        const AlertAnswer answer = alerts().runModal(question());
        QCOMPARE(answer.button, button);
        QCOMPARE(answer.isFirstButton(), button == 0);
    }
}

void AlertsContract::the_check_box_is_off_until_the_user_turns_it_on()
{
    Alert alert = question();
    alert.checkboxTitle = u"Never ask again"_s;
    for (const bool on : {false, true}) {
        world.answerAlert(alert, {.button = 0, .checkboxOn = on});
        QCOMPARE(alerts().runModal(alert).checkboxOn, on);
    }
}

void AlertsContract::without_a_check_box_none_is_on()
{
    world.answerAlert(question(), {.button = 0});
    QVERIFY(!alerts().runModal(question()).checkboxOn);
}

void AlertsContract::a_text_of_any_length_can_be_answered()
{
    Alert alert = question();
    alert.informativeText = u"One more line.\n"_s.repeated(2000);
    alert.dark = true;
    world.answerAlert(alert, {.button = 1});
    QCOMPARE(alerts().runModal(alert).button, 1);
}

void AlertsContract::the_main_loop_turns_meanwhile()
{
    bool turned = false;
    world.platform().mainQueue->async([&turned] { turned = true; });
    world.answerAlert(question(), {.button = 0});
    alerts().runModal(question());
    QVERIFY(turned);
}

std::unique_ptr<QObject> alertsContract(World &world)
{
    return std::make_unique<AlertsContract>(world);
}

#include "AlertsContract.moc"
