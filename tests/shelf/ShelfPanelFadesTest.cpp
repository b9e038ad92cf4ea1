// SPDX-License-Identifier: MIT
#include "tests/shelf/PanelFixture.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QTest>

// How the panel shows and hides: its fades, and the timer that hides an empty shelf.
class ShelfPanelFadesTest : public QObject {
    Q_OBJECT

private slots:
    // Show and hide
    void showing_fades_in_over_0_22_seconds();
    void the_panel_is_transparent_before_it_comes_to_the_front();
    void showing_without_a_fade_lets_the_timer_run_on();
    void showing_again_fades_in_again();
    void hiding_fades_out_over_0_18_seconds_and_restores_the_opacity();
    void the_panel_is_still_transparent_as_it_is_ordered_out();
    void hiding_again_lets_the_fade_out_go_on();
    void hiding_a_hidden_panel_does_nothing();
    void showing_during_the_fade_out_keeps_the_panel();
    void without_animation_it_shows_and_hides_at_once();
    void disabled_animations_show_and_hide_at_once_and_arm_no_timer();
    // Empty shelf
    void what_arrives_while_an_empty_shelf_fades_out_brings_it_back();
    void hiding_takes_an_empty_shelf_that_fades_out_whatever_arrives();
    void a_shelf_that_the_user_hides_goes_though_its_time_is_up();
    void no_timeout_arms_no_timer();
    void a_timeout_hides_a_shelf_that_is_then_empty();
    void a_timeout_leaves_a_shelf_that_holds_items();
    void adding_an_item_arms_the_timeout_again();
    void an_emptied_shelf_hides_after_1_5_seconds_whatever_the_timeout();
    void arming_a_timer_ends_the_previous_one();
    void hiding_ends_the_timer();
    void fading_out_ends_the_timer();
    void a_timer_that_outlives_the_panel_does_nothing();
};

void ShelfPanelFadesTest::showing_fades_in_over_0_22_seconds()
{
    PanelFixture f;
    f.panel->show(Animated::Yes);
    QVERIFY(f.panel->isVisible());
    QCOMPARE(f.panel->alpha(), 0.0);
    QCOMPARE(f.panel->geometry(), QRect(1160, 318, 116, 164));
    QCOMPARE(f.virtualPlatform.floatingPanels.ordersFront, 1);
    f.advance(0.10);
    // The ease-out curve is slower at the beginning than the standard curve, but past the middle at half time.
    QVERIFY2(f.panel->alpha() < 0.7, QByteArray::number(f.panel->alpha()));
    f.advance(0.01);
    QVERIFY2(f.panel->alpha() > 0.6, QByteArray::number(f.panel->alpha()));
    f.advance(0.10);
    QVERIFY(f.panel->alpha() < 1.0);
    QCOMPARE(f.virtualPlatform.floatingPanels.alphas.value(f.panel.get()), f.panel->alpha());
    f.advance(0.01);
    QCOMPARE(f.panel->alpha(), 1.0);
    QCOMPARE(f.virtualPlatform.floatingPanels.alphas.value(f.panel.get()), 1.0);
}

void ShelfPanelFadesTest::the_panel_is_transparent_before_it_comes_to_the_front()
{
    PanelFixture f;
    QList<double> atFront;
    f.virtualPlatform.floatingPanels.whenOrderedFront = [&](QWidget &window) {
        atFront.append(f.virtualPlatform.floatingPanels.alphas.value(&window, 1.0));
    };
    f.panel->show(Animated::Yes);
    QCOMPARE(atFront, QList<double>{0.0});
}

void ShelfPanelFadesTest::showing_again_fades_in_again()
{
    PanelFixture f;
    f.panel->show(Animated::Yes);
    f.advance(1);
    f.panel->show(Animated::Yes);
    QCOMPARE(f.panel->alpha(), 0.0);
    QCOMPARE(f.virtualPlatform.floatingPanels.ordersFront, 2);
    f.advance(0.22);
    QCOMPARE(f.panel->alpha(), 1.0);
}

void ShelfPanelFadesTest::hiding_fades_out_over_0_18_seconds_and_restores_the_opacity()
{
    PanelFixture f;
    f.panel->show(Animated::No);
    f.panel->hide(Animated::Yes);
    QCOMPARE(f.panel->alpha(), 1.0);
    f.advance(0.10);
    // The standard curve is fast in the middle.
    QVERIFY2(f.panel->alpha() > 0 && f.panel->alpha() < 0.2, QByteArray::number(f.panel->alpha()));
    f.advance(0.07);
    QVERIFY(f.panel->isVisible());
    QVERIFY(f.panel->alpha() > 0);
    f.advance(0.01);
    QVERIFY(!f.panel->isVisible());
    QCOMPARE(f.panel->alpha(), 1.0);
    QCOMPARE(f.virtualPlatform.floatingPanels.ordersOut, 1);
}

void ShelfPanelFadesTest::the_panel_is_still_transparent_as_it_is_ordered_out()
{
    PanelFixture f;
    QList<double> atOut;
    f.virtualPlatform.floatingPanels.whenOrderedOut = [&](QWidget &window) {
        atOut.append(f.virtualPlatform.floatingPanels.alphas.value(&window, 1.0));
    };
    f.panel->show(Animated::Yes);
    f.advance(1);
    f.panel->hide(Animated::Yes);
    f.advance(0.18);
    QCOMPARE(atOut, QList<double>{0.0});
    QCOMPARE(f.panel->alpha(), 1.0);
}

void ShelfPanelFadesTest::hiding_again_lets_the_fade_out_go_on()
{
    PanelFixture f;
    f.panel->show(Animated::No);
    f.panel->hide(Animated::Yes);
    f.advance(0.1);
    f.panel->hide(Animated::Yes);
    f.advance(0.07);
    QVERIFY(f.panel->isVisible());
    f.advance(0.01);
    QVERIFY(!f.panel->isVisible());
    QVERIFY(!f.panel->isHiding());
    // A panel that hides without animation hides at once.
    f.panel->show(Animated::No);
    f.panel->hide(Animated::Yes);
    f.advance(0.1);
    f.panel->hide(Animated::No);
    QVERIFY(!f.panel->isVisible());
    QCOMPARE(f.panel->alpha(), 1.0);
}

void ShelfPanelFadesTest::hiding_a_hidden_panel_does_nothing()
{
    PanelFixture f;
    f.panel->hide(Animated::Yes);
    f.panel->hide(Animated::No);
    f.advance(1);
    QCOMPARE(f.virtualPlatform.floatingPanels.ordersOut, 0);
}

void ShelfPanelFadesTest::showing_during_the_fade_out_keeps_the_panel()
{
    PanelFixture f;
    f.panel->show(Animated::No);
    f.panel->hide(Animated::Yes);
    f.advance(0.1);
    f.panel->show(Animated::Yes);
    f.advance(1);
    QVERIFY(f.panel->isVisible());
    QCOMPARE(f.panel->alpha(), 1.0);
}

void ShelfPanelFadesTest::without_animation_it_shows_and_hides_at_once()
{
    PanelFixture f;
    f.panel->show(Animated::No);
    QVERIFY(f.panel->isVisible());
    QCOMPARE(f.panel->alpha(), 1.0);
    f.panel->hide(Animated::No);
    QVERIFY(!f.panel->isVisible());
}

void ShelfPanelFadesTest::disabled_animations_show_and_hide_at_once_and_arm_no_timer()
{
    PanelFixture f;
    f.set(Settings::disableAnimations.key, true);
    f.set(Settings::autoHideTimeout.key, 3.0);
    f.panel->show(Animated::Yes);
    QVERIFY(f.panel->isVisible());
    QCOMPARE(f.panel->alpha(), 1.0);
    QCOMPARE(f.virtualPlatform.mainQueue.timerCount(), 0);
    f.panel->hide(Animated::Yes);
    QVERIFY(!f.panel->isVisible());
}

void ShelfPanelFadesTest::what_arrives_while_an_empty_shelf_fades_out_brings_it_back()
{
    PanelFixture f;
    f.set(Settings::autoHideTimeout.key, 1.0);
    f.panel->show(Animated::Yes);
    f.advance(1.1);
    QVERIFY(f.panel->isHiding());
    f.add(1);
    f.advance(5);
    QVERIFY(f.panel->isVisible());
    QVERIFY(!f.panel->isHiding());
    QCOMPARE(f.panel->alpha(), 1.0);
    // A shelf that the user hides goes away even with files on it.
    f.panel->hide(Animated::Yes);
    f.add(1);
    f.advance(1);
    QVERIFY(!f.panel->isVisible());
}

void ShelfPanelFadesTest::hiding_takes_an_empty_shelf_that_fades_out_whatever_arrives()
{
    PanelFixture f;
    f.set(Settings::autoHideTimeout.key, 1.0);
    f.panel->show(Animated::Yes);
    f.advance(1.1);
    QVERIFY(f.panel->isHiding());
    f.panel->hide(Animated::Yes);
    f.add(1);
    f.advance(0.07);
    QVERIFY(f.panel->isVisible());
    f.advance(0.01);
    QVERIFY(!f.panel->isVisible());
}

void ShelfPanelFadesTest::a_shelf_that_the_user_hides_goes_though_its_time_is_up()
{
    PanelFixture f;
    f.panel->show(Animated::No);
    f.panel->hide(Animated::Yes);
    f.set(Settings::autoHideTimeout.key, 0.05);
    f.panel->restartAutoHideTimer();
    f.advance(0.06);
    f.add(1);
    f.advance(0.11);
    QVERIFY(f.panel->isVisible());
    f.advance(0.01);
    QVERIFY(!f.panel->isVisible());
}

void ShelfPanelFadesTest::no_timeout_arms_no_timer()
{
    PanelFixture f;
    f.panel->show(Animated::Yes);
    f.advance(0.22);
    QCOMPARE(f.virtualPlatform.mainQueue.timerCount(), 0);
    f.advance(100);
    QVERIFY(f.panel->isVisible());
}

void ShelfPanelFadesTest::a_timeout_hides_a_shelf_that_is_then_empty()
{
    PanelFixture f;
    f.set(Settings::autoHideTimeout.key, 3.0);
    f.panel->show(Animated::Yes);
    f.advance(2.99);
    QVERIFY(f.panel->isVisible());
    QCOMPARE(f.panel->alpha(), 1.0);
    f.advance(0.01 + 0.18);
    QVERIFY(!f.panel->isVisible());
}

void ShelfPanelFadesTest::a_timeout_leaves_a_shelf_that_holds_items()
{
    PanelFixture f;
    f.set(Settings::autoHideTimeout.key, 3.0);
    f.add(1);
    f.panel->show(Animated::Yes);
    f.advance(10);
    QVERIFY(f.panel->isVisible());
}

void ShelfPanelFadesTest::adding_an_item_arms_the_timeout_again()
{
    PanelFixture f;
    f.set(Settings::autoHideTimeout.key, 3.0);
    f.panel->show(Animated::Yes);
    f.advance(2);
    f.add(1);
    QCOMPARE(f.virtualPlatform.mainQueue.timerCount(), 1);
    f.advance(1.5);
    QCOMPARE(f.virtualPlatform.mainQueue.timerCount(), 1);
    f.advance(1.5);
    QCOMPARE(f.virtualPlatform.mainQueue.timerCount(), 0);
}

void ShelfPanelFadesTest::an_emptied_shelf_hides_after_1_5_seconds_whatever_the_timeout()
{
    for (const double timeout : {0.0, 60.0}) {
        PanelFixture f;
        f.add(1);
        f.panel->show(Animated::Yes);
        f.advance(1);
        f.set(Settings::autoHideTimeout.key, timeout);
        f.panel->removeItem(file(0));
        f.advance(0.18);
        f.advance(1.49);
        QVERIFY(f.panel->isVisible());
        QCOMPARE(f.panel->alpha(), 1.0);
        f.advance(0.01 + 0.18);
        QVERIFY(!f.panel->isVisible());
    }
}

void ShelfPanelFadesTest::arming_a_timer_ends_the_previous_one()
{
    PanelFixture f;
    f.set(Settings::autoHideTimeout.key, 1.0);
    f.panel->show(Animated::Yes);
    f.panel->scheduleHideIfEmpty();
    f.advance(1.4);
    QVERIFY(f.panel->isVisible());
    f.set(Settings::autoHideTimeout.key, 0.0);
    f.panel->restartAutoHideTimer();
    f.advance(10);
    QVERIFY(f.panel->isVisible());
}

void ShelfPanelFadesTest::hiding_ends_the_timer()
{
    PanelFixture f;
    f.set(Settings::autoHideTimeout.key, 1.0);
    f.panel->show(Animated::Yes);
    f.panel->hide(Animated::No);
    // If the timer continued, it would hide the shelf that was shown again without a timer.
    f.panel->show(Animated::No);
    f.advance(5);
    QVERIFY(f.panel->isVisible());
}

void ShelfPanelFadesTest::fading_out_ends_the_timer()
{
    PanelFixture f;
    f.set(Settings::autoHideTimeout.key, 3.0);
    f.panel->show(Animated::Yes);
    f.advance(1);
    QCOMPARE(f.virtualPlatform.mainQueue.timerCount(), 1);
    f.panel->hide(Animated::Yes);
    f.advance(0.18);
    QVERIFY(!f.panel->isVisible());
    QCOMPARE(f.virtualPlatform.mainQueue.timerCount(), 0);
}

void ShelfPanelFadesTest::a_timer_that_outlives_the_panel_does_nothing()
{
    for (const bool emptied : {false, true}) {
        PanelFixture f;
        f.set(Settings::autoHideTimeout.key, 1.0);
        f.panel->show(Animated::No);
        if (emptied)
            f.panel->scheduleHideIfEmpty();
        else
            f.panel->restartAutoHideTimer();
        QCOMPARE(f.virtualPlatform.mainQueue.timerCount(), 1);
        f.panel.reset();
        f.advance(5);
        QCOMPARE(f.virtualPlatform.floatingPanels.ordersOut, 0);
        QCOMPARE(f.virtualPlatform.mainQueue.timerCount(), 0);
    }
}

void ShelfPanelFadesTest::showing_without_a_fade_lets_the_timer_run_on()
{
    PanelFixture f;
    f.set(Settings::autoHideTimeout.key, 2.0);
    f.panel->show(Animated::Yes);
    f.advance(1.5);
    f.panel->show(Animated::No);
    f.advance(0.4);
    QVERIFY(!f.panel->isHiding());
    f.advance(0.1);
    QVERIFY(f.panel->isHiding());
}

PARKLET_TEST(ShelfPanelFadesTest)
#include "ShelfPanelFadesTest.moc"
