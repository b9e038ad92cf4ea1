// SPDX-License-Identifier: MIT
#include "screenshots/ScreenshotWatcher.h"

#include "settings/AppSettings.h"
#include "tests/screenshots/WatcherFixture.h"
#include "tests/support/NoDescriptors.h"
#include "tests/support/TestProgram.h"
#include "tests/support/VirtualPlatform.h"

#include <QTest>

#include <optional>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

// Starting and stopping the watcher, and the reports of its streams meanwhile.
class ScreenshotWatcherStreamsTest : public QObject {
    Q_OBJECT

private slots:
    void a_second_start_adds_a_second_stream_and_reports_nothing_twice();
    void a_second_start_takes_a_fresh_look();
    void a_start_forgets_what_an_earlier_one_knew_data();
    void a_start_forgets_what_an_earlier_one_knew();
    void a_change_between_two_calls_of_one_turn_is_found_data();
    void a_change_between_two_calls_of_one_turn_is_found();
    void a_call_within_a_look_reports_nothing_twice();
    void a_folder_that_stays_as_it_is_is_looked_at_once_a_turn();
    void a_stop_ends_the_stream_of_the_last_start_only();
    void a_stop_without_a_stream_does_nothing();
    void a_second_stop_leaves_the_stream_of_an_earlier_start();
    void a_stop_keeps_what_is_known_for_a_stream_still_running();
    void a_refused_stream_leaves_the_running_one_in_place();
    void with_the_setting_off_a_change_is_not_even_looked_at();
    void a_start_does_not_look_at_the_setting();
};

namespace {

using Fixture = WatcherFixture;

} // namespace

void ScreenshotWatcherStreamsTest::a_second_start_adds_a_second_stream_and_reports_nothing_twice()
{
    Fixture f;
    f.watcher->start();
    f.watcher->start();
    QCOMPARE(f.streams.streams.size(), 2);
    QVERIFY(f.streams.streams.first()->isRunning());
    QVERIFY(f.streams.streams.last()->isRunning());
    f.create(kShot);
    f.change();
    QCOMPARE(f.takeReported(), QStringList{kShot});

    // The two streams need not report in the same turn.
    f.create(u"next.png"_s);
    f.streams.streams.last()->handler();
    f.queue.runPending();
    f.streams.streams.first()->handler();
    f.queue.runPending();
    QCOMPARE(f.reported, QStringList{u"next.png"_s});
}

void ScreenshotWatcherStreamsTest::a_second_start_takes_a_fresh_look()
{
    Fixture f;
    f.watcher->start();
    f.create(kShot);
    f.watcher->start();
    f.change();
    QVERIFY(f.reported.isEmpty());
}

void ScreenshotWatcherStreamsTest::a_start_forgets_what_an_earlier_one_knew_data()
{
    QTest::addColumn<bool>("stops");
    QTest::newRow("two streams") << false;
    QTest::newRow("one after the other") << true;
}

void ScreenshotWatcherStreamsTest::a_start_forgets_what_an_earlier_one_knew()
{
    QFETCH(const bool, stops);
    Fixture f;
    f.create(kShot);
    f.watcher->start();
    f.remove(kShot);
    if (stops)
        f.watcher->stop();
    f.watcher->start();
    f.create(kShot);
    f.change();
    QCOMPARE(f.reported, QStringList{kShot});
}

void ScreenshotWatcherStreamsTest::a_change_between_two_calls_of_one_turn_is_found_data()
{
    QTest::addColumn<bool>("settled");
    QTest::addColumn<bool>("starts");
    QTest::newRow("at once") << false << false;
    QTest::newRow("at once, after a start") << false << true;
    QTest::newRow("long after the change before") << true << false;
    QTest::newRow("long after the change before, after a start") << true << true;
}

void ScreenshotWatcherStreamsTest::a_change_between_two_calls_of_one_turn_is_found()
{
    QFETCH(const bool, settled);
    QFETCH(const bool, starts);
    Fixture f;
    const QStringList names = {u"a.png"_s, u"b.png"_s};
    f.watcher->start();
    f.watcher->start();
    f.create(names.first());
    if (settled) {
        f.awaitClockTick();
        f.queue.startDate = QDateTime::currentDateTime().addSecs(60);
        f.setAge(names.first(), 0);
    }
    f.streams.streams.first()->handler();
    if (starts)
        f.watcher->start();
    f.create(names.last());
    f.streams.streams.last()->handler();
    f.queue.runPending();
    QCOMPARE(f.reported, names);
}

void ScreenshotWatcherStreamsTest::a_call_within_a_look_reports_nothing_twice()
{
    Fixture f;
    const QString second = u"shot too.png"_s;
    f.watcher->start();
    f.streams.whenAsked = [&] {
        f.streams.whenAsked = nullptr;
        f.create(second);
        f.streams.send();
    };
    f.create(kShot);
    f.change();
    f.reported.sort();
    QCOMPARE(f.reported, (QStringList{second, kShot}));
}

void ScreenshotWatcherStreamsTest::a_folder_that_stays_as_it_is_is_looked_at_once_a_turn()
{
    Fixture f;
    f.queue.startDate = QDateTime::currentDateTime().addSecs(60); // the folder's last change is long ago
    f.watcher->start();
    f.watcher->start();
    f.create(kShot);
    f.streams.streams.first()->handler();
    {
        // A second check would see an empty folder now, and the next one all files as new.
        const NoDescriptors noDescriptors;
        f.streams.streams.last()->handler();
    }
    f.change();
    QCOMPARE(f.takeReported(), QStringList{kShot});

    // The next turn checks again, because not every file system dates each change.
    {
        const NoDescriptors noDescriptors;
        f.change();
    }
    f.change();
    QCOMPARE(f.reported, QStringList{kShot});
}

void ScreenshotWatcherStreamsTest::a_stop_ends_the_stream_of_the_last_start_only()
{
    Fixture f;
    f.watcher->start();
    f.watcher->start();
    f.watcher->stop();
    QVERIFY(f.streams.streams.first()->isRunning());
    QCOMPARE(f.streams.streams.last()->calls, kStopped);
    f.create(kShot);
    f.change();
    QCOMPARE(f.reported, QStringList{kShot});
}

void ScreenshotWatcherStreamsTest::a_stop_without_a_stream_does_nothing()
{
    Fixture f;
    f.watcher->stop();
    f.watcher->start();
    f.watcher->stop();
    f.watcher->stop();
    QCOMPARE(f.streams.streams.first()->calls, kStopped);
    // A stopped watcher does not own the stream any more.
    QCOMPARE(f.streams.streams.first().use_count(), 1);
}

void ScreenshotWatcherStreamsTest::a_second_stop_leaves_the_stream_of_an_earlier_start()
{
    Fixture f;
    f.watcher->start();
    f.watcher->start();
    f.watcher->stop();
    f.watcher->stop();
    QVERIFY(f.streams.streams.first()->isRunning());
    f.create(kShot);
    f.change();
    QCOMPARE(f.reported, QStringList{kShot});
}

void ScreenshotWatcherStreamsTest::a_stop_keeps_what_is_known_for_a_stream_still_running()
{
    Fixture f;
    const QString second = u"shot too.png"_s;
    f.create(kShot);
    f.watcher->start();
    f.watcher->start();
    f.create(second);
    f.watcher->stop();
    f.change();
    QCOMPARE(f.reported, QStringList{second});
}

void ScreenshotWatcherStreamsTest::a_refused_stream_leaves_the_running_one_in_place()
{
    Fixture f;
    f.streams.refuses = true;
    f.watcher->start();
    f.watcher->stop();
    f.streams.refuses = false;
    f.watcher->start();
    f.streams.refuses = true;
    f.watcher->start();
    QCOMPARE(f.streams.streams.size(), 1);
    f.watcher->stop();
    QCOMPARE(f.streams.streams.first()->calls, kStopped);
}

void ScreenshotWatcherStreamsTest::with_the_setting_off_a_change_is_not_even_looked_at()
{
    Fixture f;
    f.watcher->start();
    f.settings.set(Settings::autoAddScreenshots, false);
    f.create(kShot);
    f.change();
    QVERIFY(f.reported.isEmpty());
    f.settings.set(Settings::autoAddScreenshots, true);
    f.change();
    QCOMPARE(f.reported, QStringList{kShot});
}

void ScreenshotWatcherStreamsTest::a_start_does_not_look_at_the_setting()
{
    Fixture f;
    f.settings.set(Settings::autoAddScreenshots, false);
    f.watcher->start();
    QCOMPARE(f.streams.streams.size(), 1);
    f.settings.set(Settings::autoAddScreenshots, true);
    f.create(kShot);
    f.change();
    QCOMPARE(f.reported, QStringList{kShot});
}

PARKLET_GUILESS_TEST(ScreenshotWatcherStreamsTest)
#include "ScreenshotWatcherStreamsTest.moc"
