// SPDX-License-Identifier: MIT
#include "platform/linux/files/LinuxFileEventStreams.h"

#include "tests/platform/files/StreamFixture.h"
#include "tests/support/NoDescriptors.h"
#include "tests/support/TestProgram.h"

#include <QAbstractEventDispatcher>
#include <QDir>
#include <QFile>
#include <QTest>

#include <optional>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

// When streams call back, and how they start and end.
class LinuxFileEventStreamsTest : public QObject {
    Q_OBJECT

private slots:
    void a_change_is_told_after_the_latency_data();
    void a_change_is_told_after_the_latency();
    void changes_within_the_latency_are_told_once();
    void each_latency_begins_with_a_change_of_its_own();
    void nothing_is_armed_while_nothing_changes();
    void a_change_elsewhere_in_the_parent_is_not_told();
    void comings_and_goings_further_up_do_not_even_wake_it();
    void comings_and_goings_beside_a_link_do_not_even_wake_it();
    void a_call_waits_for_the_end_of_a_loop_inside_the_main_loop_data();
    void a_call_waits_for_the_end_of_a_loop_inside_the_main_loop();
    void a_stream_that_goes_while_its_call_waits_is_not_called();
    void a_stream_calls_nobody_before_its_start();
    void a_stream_keeps_running_without_its_handle();
    void a_stopped_stream_is_not_called_and_can_be_started_again();
    void an_invalidated_stream_is_ended_for_good();
    void a_second_start_of_a_stream_does_not_call_twice();
    void two_streams_of_a_folder_are_both_called();
    void a_thousand_streams_of_a_folder_are_each_called_once();
    void a_handler_may_stop_its_own_stream_and_others();
    void a_handle_may_outlive_the_service();
    void a_relative_folder_is_refused();
};

namespace {

using Fixture = StreamFixture;

} // namespace

void LinuxFileEventStreamsTest::a_change_is_told_after_the_latency_data()
{
    QTest::addColumn<int>("change");
    int change = 0;
    for (const char *name : {"a new file", "a file moved in", "a file moved out", "a file deleted", "a file written",
                             "a file's permissions", "a new folder"})
        QTest::newRow(name) << change++;
}

void LinuxFileEventStreamsTest::a_change_is_told_after_the_latency()
{
    Fixture f;
    f.makeFolder(kDesktop);
    f.makeFile(u"outside"_s);
    f.makeFile(u"Desktop/inside"_s);
    f.follow(kDesktop);
    const QString inside = f.path(u"Desktop/inside"_s);

    QFETCH(const int, change);
    switch (change) {
    case 0:
        f.makeFile(u"Desktop/new"_s);
        break;
    case 1:
        f.rename(u"outside"_s, u"Desktop/moved"_s);
        break;
    case 2:
        f.rename(u"Desktop/inside"_s, u"moved"_s);
        break;
    case 3:
        QVERIFY(QFile::remove(inside));
        break;
    case 4: {
        QFile file(inside);
        QVERIFY(file.open(QFile::Append));
        file.write("more");
        break;
    }
    case 5:
        QVERIFY(QFile::setPermissions(inside, QFile::ReadOwner));
        break;
    default:
        f.makeFolder(u"Desktop/folder"_s);
    }

    QTRY_COMPARE_WITH_TIMEOUT(f.queue.timerCount(), 1, kPatience);
    f.queue.advance(0.499);
    QCOMPARE(f.calls, 0);
    f.queue.advance(0.001);
    QCOMPARE(f.calls, 1);
    QCOMPARE(f.queue.timerCount(), 0);
}

void LinuxFileEventStreamsTest::changes_within_the_latency_are_told_once()
{
    Fixture f;
    f.makeFolder(kDesktop);
    f.follow(kDesktop);
    f.makeFile(u"Desktop/first"_s);
    QTRY_COMPARE_WITH_TIMEOUT(f.queue.timerCount(), 1, kPatience);
    QCoreApplication::processEvents();
    for (int i = 0; i < 200; ++i)
        f.makeFile(u"Desktop/%1"_s.arg(i));
    // The changes stay in the kernel's queue, and do not wake the process.
    QVERIFY(!QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents));
    f.queue.advance(0.5);
    QCOMPARE(f.calls, 1);
    QCoreApplication::processEvents();
    QCOMPARE(f.queue.timerCount(), 0);
}

void LinuxFileEventStreamsTest::each_latency_begins_with_a_change_of_its_own()
{
    Fixture f;
    f.makeFolder(kDesktop);
    f.follow(kDesktop);
    QVERIFY(f.isFollowed(kDesktop));
    f.queue.advance(10);
    QVERIFY(f.isFollowed(kDesktop));
    QVERIFY(f.isFollowed(kDesktop));
    QCOMPARE(f.calls, 3);
}

void LinuxFileEventStreamsTest::nothing_is_armed_while_nothing_changes()
{
    Fixture f;
    f.makeFolder(kDesktop);
    f.follow(kDesktop);
    f.follow(u"missing"_s);
    QCoreApplication::processEvents();
    QCOMPARE(f.queue.timerCount(), 0);
    QCOMPARE(f.queue.pendingCount(), 0);
}

void LinuxFileEventStreamsTest::a_change_elsewhere_in_the_parent_is_not_told()
{
    Fixture f;
    f.makeFolder(kDesktop);
    f.follow(kDesktop);
    f.makeFile(u"beside"_s);
    QCoreApplication::processEvents();
    QCOMPARE(f.queue.timerCount(), 0);
    QVERIFY(f.isFollowed(kDesktop));
}

void LinuxFileEventStreamsTest::comings_and_goings_further_up_do_not_even_wake_it()
{
    Fixture f;
    const QString deep = u"home/Desktop"_s;
    f.makeFolder(deep);
    f.follow(deep);
    QCoreApplication::processEvents();
    f.comeAndGoIn(QString());
    f.comeAndGoIn(u"home/"_s);
    QVERIFY(!QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents));
    QVERIFY(f.isFollowed(deep));
}

void LinuxFileEventStreamsTest::comings_and_goings_beside_a_link_do_not_even_wake_it()
{
    Fixture f;
    f.makeFolder(u"disk/target"_s);
    f.makeFolder(u"home"_s);
    f.link(f.path(u"disk/target"_s), u"home/Desktop"_s);
    f.follow(u"home/Desktop"_s);
    QCoreApplication::processEvents();
    f.comeAndGoIn(u"home/"_s);
    f.comeAndGoIn(u"disk/"_s);
    QVERIFY(!QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents));
    QVERIFY(f.isFollowed(u"disk/target"_s));
}

void LinuxFileEventStreamsTest::a_call_waits_for_the_end_of_a_loop_inside_the_main_loop_data()
{
    QTest::addColumn<bool>("isGranted");
    QTest::newRow("told by the system") << true;
    QTest::newRow("looked for") << false;
}

void LinuxFileEventStreamsTest::a_call_waits_for_the_end_of_a_loop_inside_the_main_loop()
{
    QFETCH(const bool, isGranted);
    Fixture f;
    f.makeFolder(kDesktop);
    std::optional<NoDescriptors> noDescriptors;
    if (!isGranted)
        noDescriptors.emplace();
    f.follow(kDesktop);
    noDescriptors.reset();

    f.inLoopWithin([&f] {
        QVERIFY(QDir().mkdir(f.path(u"Desktop/folder"_s)));
        QTRY_COMPARE_WITH_TIMEOUT(f.queue.timerCount(), 1, kPatience);
        f.queue.advance(5);
        QCOMPARE(f.calls, 0);
        QCOMPARE(f.queue.timerCount(), 0); // it waits without a timer
    });
    f.queue.advance(0);
    QCOMPARE(f.calls, 1);
    QVERIFY(f.isFollowed(kDesktop));
}

void LinuxFileEventStreamsTest::a_stream_that_goes_while_its_call_waits_is_not_called()
{
    Fixture f;
    f.makeFolder(kDesktop);
    const auto stream = f.follow(kDesktop);
    f.inLoopWithin([&f, &stream] {
        f.makeFile(u"Desktop/file"_s);
        QTRY_COMPARE_WITH_TIMEOUT(f.queue.timerCount(), 1, kPatience);
        f.queue.advance(0.5);
        stream->stop();
    });
    f.queue.advance(1);
    QCOMPARE(f.calls, 0);
}

void LinuxFileEventStreamsTest::a_stream_calls_nobody_before_its_start()
{
    Fixture f;
    f.makeFolder(kDesktop);
    int early = 0;
    const auto stream = f.streams->create(f.path(kDesktop), kLatency, [&early] { ++early; });
    f.follow(kDesktop);
    QVERIFY(f.isFollowed(kDesktop));
    QCOMPARE(early, 0);
    stream->start();
    QVERIFY(f.isFollowed(kDesktop));
    QCOMPARE(early, 1);
}

void LinuxFileEventStreamsTest::a_stream_keeps_running_without_its_handle()
{
    Fixture f;
    f.makeFolder(kDesktop);
    const std::weak_ptr<FileEventStream> handle = f.follow(kDesktop);
    QVERIFY(!handle.expired());
    QVERIFY(f.isFollowed(kDesktop));
    handle.lock()->stop();
    QVERIFY(handle.expired());
}

void LinuxFileEventStreamsTest::a_stopped_stream_is_not_called_and_can_be_started_again()
{
    Fixture f;
    f.makeFolder(kDesktop);
    const auto stream = f.follow(kDesktop);
    f.makeFile(u"Desktop/before"_s);
    QTRY_COMPARE_WITH_TIMEOUT(f.queue.timerCount(), 1, kPatience);
    stream->stop();
    stream->stop();
    QCOMPARE(f.queue.timerCount(), 0);
    f.makeFile(u"Desktop/meanwhile"_s);
    QCoreApplication::processEvents();
    f.queue.advance(1);
    QCOMPARE(f.calls, 0);

    stream->start();
    QCoreApplication::processEvents();
    QCOMPARE(f.queue.timerCount(), 0); // changes in between are not reported
    QVERIFY(f.isFollowed(kDesktop));
}

void LinuxFileEventStreamsTest::an_invalidated_stream_is_ended_for_good()
{
    Fixture f;
    f.makeFolder(kDesktop);
    const auto stream = f.follow(kDesktop);
    stream->invalidate();
    stream->start();
    int other = 0;
    f.streams->create(f.path(kDesktop), kLatency, [&other] { ++other; })->start();
    f.makeFile(u"Desktop/file"_s);
    QCOMPARE(f.settle(), 0);
    QCOMPARE(other, 1);
}

void LinuxFileEventStreamsTest::a_second_start_of_a_stream_does_not_call_twice()
{
    Fixture f;
    f.makeFolder(kDesktop);
    f.follow(kDesktop)->start();
    QVERIFY(f.isFollowed(kDesktop));
}

void LinuxFileEventStreamsTest::two_streams_of_a_folder_are_both_called()
{
    Fixture f;
    f.makeFolder(kDesktop);
    f.follow(kDesktop);
    const auto second = f.follow(kDesktop);
    f.makeFile(u"Desktop/file"_s);
    QCOMPARE(f.settle(), 2);
    second->stop();
    QVERIFY(f.isFollowed(kDesktop));
}

void LinuxFileEventStreamsTest::a_thousand_streams_of_a_folder_are_each_called_once()
{
    Fixture f;
    f.makeFolder(kDesktop);
    for (int i = 0; i < 1'000; ++i)
        f.follow(kDesktop);
    f.makeFile(u"Desktop/file"_s);
    QCOMPARE(f.settle(), 1'000);
}

void LinuxFileEventStreamsTest::a_handler_may_stop_its_own_stream_and_others()
{
    Fixture f;
    f.makeFolder(kDesktop);
    std::shared_ptr<FileEventStream> last;
    std::shared_ptr<FileEventStream> first = f.streams->create(f.path(kDesktop), kLatency, [&] {
        ++f.calls;
        last->invalidate();
        first->invalidate();
        first = nullptr;
        last = nullptr;
    });
    first->start();
    last = f.follow(kDesktop);
    f.makeFile(u"Desktop/file"_s);
    QCOMPARE(f.settle(), 1);
    f.makeFile(u"Desktop/next"_s);
    QCoreApplication::processEvents();
    QCOMPARE(f.queue.timerCount(), 0);
}

void LinuxFileEventStreamsTest::a_handle_may_outlive_the_service()
{
    Fixture f;
    f.makeFolder(kDesktop);
    const auto stream = f.follow(kDesktop);
    f.makeFile(u"Desktop/file"_s);
    QTRY_COMPARE_WITH_TIMEOUT(f.queue.timerCount(), 1, kPatience);
    f.streams.reset();
    f.queue.advance(1);
    QCOMPARE(f.calls, 0);
    stream->stop();
    stream->start();
    stream->invalidate();
}

void LinuxFileEventStreamsTest::a_relative_folder_is_refused()
{
    Fixture f;
    QVERIFY(!f.streams->create(kDesktop, kLatency, [] {}));
    QVERIFY(!f.streams->create(QString(), kLatency, [] {}));
}

PARKLET_GUILESS_TEST(LinuxFileEventStreamsTest)
#include "LinuxFileEventStreamsTest.moc"
