// SPDX-License-Identifier: MIT
#include "shelf/Fader.h"
#include "tests/support/TestProgram.h"
#include "tests/support/VirtualPlatform.h"

#include <QTest>

using namespace Qt::StringLiterals;

class FaderTest : public QObject {
    Q_OBJECT

private slots:
    void a_fade_takes_its_time_and_then_completes_once();
    void an_ease_out_is_ahead_of_the_standard_curve_at_first();
    void a_new_fade_takes_over_and_the_old_one_never_completes();
    void setting_the_value_ends_the_fade();
    void a_destroyed_fader_does_nothing_more();
    void a_finished_fade_leaves_no_timer();
    void a_completion_may_destroy_the_fader();
};

void FaderTest::a_fade_takes_its_time_and_then_completes_once()
{
    VirtualMainQueue queue;
    QList<double> values;
    int completions = 0;
    Fader fader(
        queue, [&](double value) { values.append(value); }, 0.0);
    fader.fade(1.0, 0.22, FadeCurve::EaseOut, [&] { ++completions; });
    queue.advance(0.21);
    QVERIFY(fader.alpha() > 0.9 && fader.alpha() < 1.0);
    QCOMPARE(completions, 0);
    queue.advance(0.01);
    QCOMPARE(fader.alpha(), 1.0);
    QCOMPARE(completions, 1);
    queue.advance(5);
    QCOMPARE(completions, 1);
    QVERIFY(values.size() >= 12);
    QVERIFY(std::is_sorted(values.cbegin(), values.cend()));
}

void FaderTest::an_ease_out_is_ahead_of_the_standard_curve_at_first()
{
    VirtualMainQueue queue;
    Fader easeOut(
        queue, [](double) {}, 0.0);
    Fader standard(
        queue, [](double) {}, 0.0);
    easeOut.fade(1.0, 1.0, FadeCurve::EaseOut);
    standard.fade(1.0, 1.0, FadeCurve::Standard);
    queue.advance(0.1);
    QVERIFY(easeOut.alpha() > standard.alpha());
    QVERIFY(standard.alpha() < 0.1 + 0.05);
    QVERIFY(easeOut.alpha() > 0.12);
}

void FaderTest::a_new_fade_takes_over_and_the_old_one_never_completes()
{
    VirtualMainQueue queue;
    QStringList done;
    Fader fader(
        queue, [](double) {}, 1.0);
    fader.fade(0.0, 0.18, FadeCurve::Standard, [&] { done.append(u"out"_s); });
    queue.advance(0.09);
    const double midway = fader.alpha();
    QVERIFY(midway > 0 && midway < 1);
    fader.fade(1.0, 0.1, FadeCurve::Standard, [&] { done.append(u"in"_s); });
    QCOMPARE(fader.alpha(), midway);
    queue.advance(1);
    QCOMPARE(fader.alpha(), 1.0);
    QCOMPARE(done, QStringList{u"in"_s});
}

void FaderTest::setting_the_value_ends_the_fade()
{
    VirtualMainQueue queue;
    bool completed = false;
    Fader fader(
        queue, [](double) {}, 1.0);
    fader.fade(0.0, 0.18, FadeCurve::Standard, [&] { completed = true; });
    fader.setAlpha(0.5);
    queue.advance(1);
    QCOMPARE(fader.alpha(), 0.5);
    QVERIFY(!completed);
}

void FaderTest::a_destroyed_fader_does_nothing_more()
{
    VirtualMainQueue queue;
    int calls = 0;
    {
        Fader fader(
            queue, [&](double) { ++calls; }, 1.0);
        fader.fade(0.0, 0.18, FadeCurve::Standard, [&] { ++calls; });
    }
    queue.advance(1);
    QCOMPARE(calls, 0);
}

void FaderTest::a_finished_fade_leaves_no_timer()
{
    VirtualMainQueue queue;
    Fader fader(
        queue, [](double) {}, 1.0);
    fader.fade(0.0, 0.18, FadeCurve::Standard);
    queue.advance(0.18);
    QCOMPARE(queue.timerCount(), 0);
}

void FaderTest::a_completion_may_destroy_the_fader()
{
    VirtualMainQueue queue;
    auto fader = std::make_unique<Fader>(
        queue, [](double) {}, 1.0);
    fader->fade(0.0, 0.1, FadeCurve::Standard, [&] { fader.reset(); });
    queue.advance(1);
    QVERIFY(!fader);
}

PARKLET_GUILESS_TEST(FaderTest)
#include "FaderTest.moc"
