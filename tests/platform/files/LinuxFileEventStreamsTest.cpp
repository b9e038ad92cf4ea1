// SPDX-License-Identifier: MIT
#include "platform/linux/files/LinuxFileEventStreams.h"

#include "platform/FileURLs.h"
#include "tests/support/NoDescriptors.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/TestProgram.h"
#include "tests/support/VirtualPlatform.h"

#include <QAbstractEventDispatcher>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <functional>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

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
    void a_folder_that_does_not_exist_yet_is_followed_once_it_does();
    void a_path_that_does_not_exist_yet_is_followed_once_it_does();
    void a_folder_that_was_deleted_and_made_again_is_followed();
    void a_folder_that_was_deleted_while_in_use_and_made_again_is_followed();
    void an_empty_folder_that_was_deleted_while_in_use_is_missed_once_nobody_uses_it();
    void a_folder_that_was_renamed_is_followed_no_more_but_its_successor_is();
    void a_folder_whose_parent_was_renamed_and_made_again_is_followed();
    void a_folder_that_takes_the_place_of_a_file_is_followed();
    void a_link_to_a_folder_is_followed_to_its_target();
    void a_link_that_gets_another_target_is_followed_there();
    void a_links_target_that_was_deleted_and_made_again_is_followed();
    void a_link_that_is_replaced_in_one_step_is_followed_to_its_new_target();
    void a_relative_link_is_followed();
    void links_in_a_circle_lead_nowhere_until_they_are_replaced();
    void a_folder_that_may_not_be_read_is_followed_once_it_may_data();
    void a_folder_that_may_not_be_read_is_followed_once_it_may();
    void a_folder_that_may_not_be_read_is_followed_once_another_takes_its_place();
    void a_name_to_come_where_nothing_may_be_read_is_looked_for_every_five_seconds();
    void more_changes_than_the_kernel_keeps_are_told_once();
    void without_a_watch_from_the_system_the_folder_is_looked_at_every_five_seconds();
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
    void a_new_file_has_a_creation_date();
    void a_file_keeps_its_creation_date_wherever_it_is_moved();
    void a_creation_date_is_as_the_file_states_it_whatever_the_clock_says();
    void a_missing_file_has_no_creation_date();
    void a_file_system_without_birth_times_has_no_creation_date();
    void a_link_has_its_own_creation_date();
    void a_pipe_has_a_creation_date_and_does_not_block();
    void a_name_that_is_no_utf_8_has_a_creation_date();
    void a_birth_time_that_is_not_known_is_none_data();
    void a_birth_time_that_is_not_known_is_none();
};

namespace {

constexpr double kLatency = 0.5;
constexpr int kPatience = 20'000; // milliseconds

class Fixture {
public:
    // Follows `name` in the temporary folder.
    std::shared_ptr<FileEventStream> follow(const QString &name)
    {
        auto stream = streams->create(path(name), kLatency, [this] { ++calls; });
        stream->start();
        return stream;
    }

    QString path(const QString &name) const { return root.path() + QLatin1Char('/') + name; }
    void makeFolder(const QString &name) const { QVERIFY(QDir().mkpath(path(name))); }
    void removeFolder(const QString &name) const { QVERIFY(QDir(path(name)).removeRecursively()); }
    void rename(const QString &from, const QString &to) const { QVERIFY(QDir().rename(path(from), path(to))); }
    void link(const QString &target, const QString &name) const { QVERIFY(QFile::link(target, path(name))); }
    void makeFile(const QString &name) const
    {
        QFile file(path(name));
        QVERIFY(file.open(QFile::WriteOnly));
    }

    // Lets the kernel tell of the changes made, and the latency pass. How many calls that brought.
    int settle()
    {
        const int before = calls;
        [this] { QTRY_COMPARE_WITH_TIMEOUT(queue.timerCount(), 1, kPatience); }();
        queue.advance(kLatency);
        return calls - before;
    }

    // True when a file made in `name` brings one call.
    bool isFollowed(const QString &name)
    {
        makeFile(name + QStringLiteral("/file %1.png").arg(files++));
        return settle() == 1;
    }

    // What programs do all day long in a folder that is none of our business.
    void comeAndGoIn(const QString &folder) const
    {
        makeFile(folder + QStringLiteral("file"));
        rename(folder + QStringLiteral("file"), folder + QStringLiteral("other"));
        QVERIFY(QFile::setPermissions(path(folder + QStringLiteral("other")), QFile::ReadOwner));
        QVERIFY(QFile::remove(path(folder + QStringLiteral("other"))));
        makeFolder(folder + QStringLiteral("folder"));
        removeFolder(folder + QStringLiteral("folder"));
    }

    // Runs `work` in a loop within the main loop, as an alert or a drag turns one, and lets the main loop go on until
    // it rests.
    static void inLoopWithin(const std::function<void()> &work)
    {
        QEventLoop main;
        QTimer::singleShot(0, &main, [&main, &work] {
            QEventLoop within;
            QTimer::singleShot(0, &within, [&within, &work] {
                work();
                within.quit();
            });
            within.exec();
            QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, &main,
                             [&main] { QTimer::singleShot(0, &main, &QEventLoop::quit); });
        });
        main.exec();
    }

    QTemporaryDir root;
    VirtualMainQueue queue;
    std::optional<LinuxFileEventStreams> streams{queue};
    int calls = 0;

private:
    int files = 0;
};

const QString kDesktop = QStringLiteral("Desktop");

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
    f.makeFile(QStringLiteral("outside"));
    f.makeFile(QStringLiteral("Desktop/inside"));
    f.follow(kDesktop);
    const QString inside = f.path(QStringLiteral("Desktop/inside"));

    QFETCH(const int, change);
    switch (change) {
    case 0:
        f.makeFile(QStringLiteral("Desktop/new"));
        break;
    case 1:
        f.rename(QStringLiteral("outside"), QStringLiteral("Desktop/moved"));
        break;
    case 2:
        f.rename(QStringLiteral("Desktop/inside"), QStringLiteral("moved"));
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
        f.makeFolder(QStringLiteral("Desktop/folder"));
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
    f.makeFile(QStringLiteral("Desktop/first"));
    QTRY_COMPARE_WITH_TIMEOUT(f.queue.timerCount(), 1, kPatience);
    QCoreApplication::processEvents();
    for (int i = 0; i < 200; ++i)
        f.makeFile(QStringLiteral("Desktop/%1").arg(i));
    // They wait in the kernel, and wake nobody.
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
    f.follow(QStringLiteral("missing"));
    QCoreApplication::processEvents();
    QCOMPARE(f.queue.timerCount(), 0);
    QCOMPARE(f.queue.pendingCount(), 0);
}

void LinuxFileEventStreamsTest::a_change_elsewhere_in_the_parent_is_not_told()
{
    Fixture f;
    f.makeFolder(kDesktop);
    f.follow(kDesktop);
    f.makeFile(QStringLiteral("beside"));
    QCoreApplication::processEvents();
    QCOMPARE(f.queue.timerCount(), 0);
    QVERIFY(f.isFollowed(kDesktop));
}

void LinuxFileEventStreamsTest::comings_and_goings_further_up_do_not_even_wake_it()
{
    Fixture f;
    const QString deep = QStringLiteral("home/Desktop");
    f.makeFolder(deep);
    f.follow(deep);
    QCoreApplication::processEvents();
    f.comeAndGoIn(QString());
    f.comeAndGoIn(QStringLiteral("home/"));
    QVERIFY(!QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents));
    QVERIFY(f.isFollowed(deep));
}

void LinuxFileEventStreamsTest::comings_and_goings_beside_a_link_do_not_even_wake_it()
{
    Fixture f;
    f.makeFolder(QStringLiteral("disk/target"));
    f.makeFolder(QStringLiteral("home"));
    f.link(f.path(QStringLiteral("disk/target")), QStringLiteral("home/Desktop"));
    f.follow(QStringLiteral("home/Desktop"));
    QCoreApplication::processEvents();
    f.comeAndGoIn(QStringLiteral("home/"));
    f.comeAndGoIn(QStringLiteral("disk/"));
    QVERIFY(!QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents));
    QVERIFY(f.isFollowed(QStringLiteral("disk/target")));
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
        QVERIFY(QDir().mkdir(f.path(QStringLiteral("Desktop/folder"))));
        QTRY_COMPARE_WITH_TIMEOUT(f.queue.timerCount(), 1, kPatience);
        f.queue.advance(5);
        QCOMPARE(f.calls, 0);
        QCOMPARE(f.queue.timerCount(), 0); // it waits without looking at the clock
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
        f.makeFile(QStringLiteral("Desktop/file"));
        QTRY_COMPARE_WITH_TIMEOUT(f.queue.timerCount(), 1, kPatience);
        f.queue.advance(0.5);
        stream->stop();
    });
    f.queue.advance(1);
    QCOMPARE(f.calls, 0);
}

void LinuxFileEventStreamsTest::a_folder_that_does_not_exist_yet_is_followed_once_it_does()
{
    Fixture f;
    f.follow(kDesktop);
    f.makeFolder(kDesktop);
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(kDesktop));
}

void LinuxFileEventStreamsTest::a_path_that_does_not_exist_yet_is_followed_once_it_does()
{
    Fixture f;
    const QString deep = QStringLiteral("home/user/Desktop");
    f.follow(deep);
    f.makeFolder(QStringLiteral("home"));
    QCOMPARE(f.settle(), 1);
    f.makeFolder(deep);
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(deep));
}

void LinuxFileEventStreamsTest::a_folder_that_was_deleted_and_made_again_is_followed()
{
    Fixture f;
    f.makeFolder(kDesktop);
    f.follow(kDesktop);
    f.removeFolder(kDesktop);
    QCOMPARE(f.settle(), 1);
    f.makeFolder(kDesktop);
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(kDesktop));

    f.removeFolder(kDesktop);
    f.makeFolder(kDesktop);
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(kDesktop));
}

void LinuxFileEventStreamsTest::a_folder_that_was_deleted_while_in_use_and_made_again_is_followed()
{
    Fixture f;
    f.makeFolder(kDesktop);
    f.makeFile(QStringLiteral("Desktop/file"));
    f.follow(kDesktop);
    const int user = open(QFile::encodeName(f.path(kDesktop)).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    QVERIFY(user >= 0);
    f.removeFolder(kDesktop);
    f.makeFolder(kDesktop);
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(kDesktop));
    close(user);
}

void LinuxFileEventStreamsTest::an_empty_folder_that_was_deleted_while_in_use_is_missed_once_nobody_uses_it()
{
    Fixture f;
    f.makeFolder(kDesktop);
    f.follow(kDesktop);
    const int user = open(QFile::encodeName(f.path(kDesktop)).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    QVERIFY(user >= 0);
    f.removeFolder(kDesktop);
    f.makeFolder(kDesktop);
    QCoreApplication::processEvents();
    QCOMPARE(f.queue.timerCount(), 0);
    close(user);
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(kDesktop));
}

void LinuxFileEventStreamsTest::a_folder_that_was_renamed_is_followed_no_more_but_its_successor_is()
{
    Fixture f;
    const QString old = QStringLiteral("old");
    f.makeFolder(kDesktop);
    f.follow(kDesktop);
    f.rename(kDesktop, old);
    QCOMPARE(f.settle(), 1);
    f.makeFolder(kDesktop);
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(kDesktop));

    f.makeFile(QStringLiteral("old/file"));
    QCoreApplication::processEvents();
    QCOMPARE(f.queue.timerCount(), 0);
}

void LinuxFileEventStreamsTest::a_folder_whose_parent_was_renamed_and_made_again_is_followed()
{
    Fixture f;
    const QString deep = QStringLiteral("home/Desktop");
    f.makeFolder(deep);
    f.follow(deep);
    f.rename(QStringLiteral("home"), QStringLiteral("elsewhere"));
    QCOMPARE(f.settle(), 1);
    f.makeFolder(deep);
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(deep));
}

void LinuxFileEventStreamsTest::a_folder_that_takes_the_place_of_a_file_is_followed()
{
    Fixture f;
    f.makeFile(kDesktop);
    f.follow(kDesktop);
    QVERIFY(QFile::remove(f.path(kDesktop)));
    f.makeFolder(kDesktop);
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(kDesktop));
}

void LinuxFileEventStreamsTest::a_link_to_a_folder_is_followed_to_its_target()
{
    Fixture f;
    f.makeFolder(QStringLiteral("target"));
    f.link(f.path(QStringLiteral("target")), kDesktop);
    f.follow(kDesktop);
    QVERIFY(f.isFollowed(kDesktop));
    QVERIFY(f.isFollowed(QStringLiteral("target")));
}

void LinuxFileEventStreamsTest::a_link_that_gets_another_target_is_followed_there()
{
    Fixture f;
    f.makeFolder(QStringLiteral("first"));
    f.link(f.path(QStringLiteral("first")), kDesktop);
    f.follow(kDesktop);
    QVERIFY(QFile::remove(f.path(kDesktop)));
    f.link(f.path(QStringLiteral("second")), kDesktop);
    QCOMPARE(f.settle(), 1);
    f.makeFolder(QStringLiteral("second"));
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(QStringLiteral("second")));
}

void LinuxFileEventStreamsTest::a_links_target_that_was_deleted_and_made_again_is_followed()
{
    Fixture f;
    const QString target = QStringLiteral("disk/target");
    f.makeFolder(target);
    f.link(f.path(target), kDesktop);
    f.follow(kDesktop);
    f.removeFolder(target);
    QCOMPARE(f.settle(), 1);
    f.makeFolder(target);
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(kDesktop));
}

void LinuxFileEventStreamsTest::a_link_that_is_replaced_in_one_step_is_followed_to_its_new_target()
{
    Fixture f;
    f.makeFolder(QStringLiteral("first"));
    f.makeFolder(QStringLiteral("second"));
    f.link(f.path(QStringLiteral("first")), kDesktop);
    f.follow(kDesktop);
    f.link(f.path(QStringLiteral("second")), QStringLiteral("new"));
    QCOMPARE(::rename(QFile::encodeName(f.path(QStringLiteral("new"))).constData(),
                      QFile::encodeName(f.path(kDesktop)).constData()),
             0);
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(QStringLiteral("second")));
    f.makeFile(QStringLiteral("first/file"));
    QCoreApplication::processEvents();
    QCOMPARE(f.queue.timerCount(), 0);
}

void LinuxFileEventStreamsTest::a_relative_link_is_followed()
{
    Fixture f;
    f.makeFolder(QStringLiteral("home"));
    f.makeFolder(QStringLiteral("disk/target"));
    f.link(QStringLiteral(".././/disk/target"), QStringLiteral("home/Desktop"));
    f.follow(QStringLiteral("home/Desktop"));
    QVERIFY(f.isFollowed(QStringLiteral("disk/target")));
}

void LinuxFileEventStreamsTest::links_in_a_circle_lead_nowhere_until_they_are_replaced()
{
    Fixture f;
    f.link(kDesktop, kDesktop);
    f.follow(kDesktop);
    QVERIFY(QFile::remove(f.path(kDesktop)));
    f.makeFolder(kDesktop);
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(kDesktop));
}

void LinuxFileEventStreamsTest::a_folder_that_may_not_be_read_is_followed_once_it_may_data()
{
    QTest::addColumn<QString>("closed");
    QTest::newRow("itself") << QStringLiteral("home/Desktop");
    QTest::newRow("the way to it") << QStringLiteral("home");
}

void LinuxFileEventStreamsTest::a_folder_that_may_not_be_read_is_followed_once_it_may()
{
    QFETCH(const QString, closed);
    Fixture f;
    const OrdinaryUser user(f.root.path());
    const QString deep = QStringLiteral("home/Desktop");
    f.makeFolder(deep);
    QVERIFY(QFile::setPermissions(f.path(closed), {}));
    f.follow(deep);
    QCoreApplication::processEvents();
    QCOMPARE(f.queue.timerCount(), 0);

    QVERIFY(QFile::setPermissions(f.path(closed), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(deep));

    // One that is followed is not lost with the permission.
    QVERIFY(QFile::setPermissions(f.path(deep), {}));
    QCOMPARE(f.settle(), 1);
    QVERIFY(QFile::setPermissions(f.path(deep), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(deep));
}

void LinuxFileEventStreamsTest::a_folder_that_may_not_be_read_is_followed_once_another_takes_its_place()
{
    Fixture f;
    const OrdinaryUser user(f.root.path());
    f.makeFolder(kDesktop);
    QVERIFY(QFile::setPermissions(f.path(kDesktop), {}));
    f.follow(kDesktop);
    f.rename(kDesktop, QStringLiteral("old"));
    QCOMPARE(f.settle(), 1);
    f.makeFolder(kDesktop);
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(kDesktop));
    QVERIFY(QFile::setPermissions(f.path(QStringLiteral("old")), QFile::ReadOwner | QFile::ExeOwner));
}

void LinuxFileEventStreamsTest::a_name_to_come_where_nothing_may_be_read_is_looked_for_every_five_seconds()
{
    Fixture f;
    const OrdinaryUser user(f.root.path());
    const QString deep = QStringLiteral("home/Desktop");
    f.makeFolder(QStringLiteral("home"));
    QVERIFY(QFile::setPermissions(f.path(QStringLiteral("home")), QFile::WriteOwner | QFile::ExeOwner));
    f.follow(deep);
    QCOMPARE(f.queue.timerCount(), 1);
    f.makeFolder(deep);
    f.queue.advance(5);
    QCOMPARE(f.calls, 1);
    QCOMPARE(f.queue.timerCount(), 0);
    QVERIFY(f.isFollowed(deep));
    QVERIFY(
        QFile::setPermissions(f.path(QStringLiteral("home")), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

void LinuxFileEventStreamsTest::more_changes_than_the_kernel_keeps_are_told_once()
{
    QFile limitFile(QStringLiteral("/proc/sys/fs/inotify/max_queued_events"));
    QVERIFY(limitFile.open(QFile::ReadOnly));
    const int limit = limitFile.readAll().trimmed().toInt();
    if (limit > 100'000)
        QSKIP("This kernel keeps too many events to overflow them here.");

    Fixture f;
    f.makeFolder(kDesktop);
    f.follow(kDesktop);
    const QByteArray path = QFile::encodeName(f.path(QStringLiteral("Desktop/file")));
    for (int i = 0; i <= limit / 2 + 1; ++i) {
        QCOMPARE(mknod(path.constData(), S_IFREG | 0600, 0), 0);
        QCOMPARE(unlink(path.constData()), 0);
    }
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(kDesktop));
}

void LinuxFileEventStreamsTest::without_a_watch_from_the_system_the_folder_is_looked_at_every_five_seconds()
{
    Fixture f;
    f.makeFolder(kDesktop);
    std::optional<NoDescriptors> noDescriptors(std::in_place);
    f.follow(kDesktop);
    QCOMPARE(f.queue.timerCount(), 1);

    f.queue.advance(5);
    QCOMPARE(f.calls, 0);
    QVERIFY(QDir().mkdir(f.path(QStringLiteral("Desktop/first"))));
    f.queue.advance(4.9);
    QCOMPARE(f.calls, 0);
    f.queue.advance(0.1);
    QCOMPARE(f.calls, 1);
    f.queue.advance(5);
    QCOMPARE(f.calls, 1);

    // Once the system grants a watch there is no more looking.
    QVERIFY(QDir().mkdir(f.path(QStringLiteral("Desktop/second"))));
    noDescriptors.reset();
    f.queue.advance(5);
    QCOMPARE(f.calls, 2);
    QCOMPARE(f.queue.timerCount(), 0);
    QVERIFY(f.isFollowed(kDesktop));
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
    f.makeFile(QStringLiteral("Desktop/before"));
    QTRY_COMPARE_WITH_TIMEOUT(f.queue.timerCount(), 1, kPatience);
    stream->stop();
    stream->stop();
    QCOMPARE(f.queue.timerCount(), 0);
    f.makeFile(QStringLiteral("Desktop/meanwhile"));
    QCoreApplication::processEvents();
    f.queue.advance(1);
    QCOMPARE(f.calls, 0);

    stream->start();
    QCoreApplication::processEvents();
    QCOMPARE(f.queue.timerCount(), 0); // what happened meanwhile is not told
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
    f.makeFile(QStringLiteral("Desktop/file"));
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
    f.makeFile(QStringLiteral("Desktop/file"));
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
    f.makeFile(QStringLiteral("Desktop/file"));
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
    f.makeFile(QStringLiteral("Desktop/file"));
    QCOMPARE(f.settle(), 1);
    f.makeFile(QStringLiteral("Desktop/next"));
    QCoreApplication::processEvents();
    QCOMPARE(f.queue.timerCount(), 0);
}

void LinuxFileEventStreamsTest::a_handle_may_outlive_the_service()
{
    Fixture f;
    f.makeFolder(kDesktop);
    const auto stream = f.follow(kDesktop);
    f.makeFile(QStringLiteral("Desktop/file"));
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

void LinuxFileEventStreamsTest::a_new_file_has_a_creation_date()
{
    Fixture f;
    f.queue.startDate = QDateTime::currentDateTime();
    f.makeFile(QStringLiteral("file"));
    const auto date = f.streams->creationDate(QUrl::fromLocalFile(f.path(QStringLiteral("file"))));
    if (!date)
        QSKIP("The file system of the temporary folder keeps no birth times.");
    QVERIFY(qAbs(date->secsTo(f.queue.startDate)) < 60);

    // Writing later, or setting the other dates, does not move it.
    QFile file(f.path(QStringLiteral("file")));
    QVERIFY(file.open(QFile::Append));
    QVERIFY(file.setFileTime(QDateTime::fromSecsSinceEpoch(1'000'000), QFile::FileModificationTime));
    QCOMPARE(f.streams->creationDate(QUrl::fromLocalFile(file.fileName())), date);
}

void LinuxFileEventStreamsTest::a_file_keeps_its_creation_date_wherever_it_is_moved()
{
    constexpr qint64 kLater = 20; // milliseconds
    Fixture f;
    f.makeFolder(kDesktop);
    f.makeFile(QStringLiteral("file"));
    const QString first = f.path(QStringLiteral("file"));
    const auto date = f.streams->creationDate(QUrl::fromLocalFile(first));
    if (!date)
        QSKIP("The file system of the temporary folder keeps no birth times.");
    const auto wasChangedLater = [&first, &date] {
        return QFile::setPermissions(first, QFile::ReadOwner) &&
               date->msecsTo(QFileInfo(first).metadataChangeTime()) > kLater;
    };
    QTRY_VERIFY_WITH_TIMEOUT(wasChangedLater(), kPatience);
    f.rename(QStringLiteral("file"), QStringLiteral("Desktop/file.png"));
    QCOMPARE(f.streams->creationDate(QUrl::fromLocalFile(f.path(QStringLiteral("Desktop/file.png")))), date);
}

void LinuxFileEventStreamsTest::a_creation_date_is_as_the_file_states_it_whatever_the_clock_says()
{
    Fixture f; // whose clock stands at a day years ago
    f.makeFile(QStringLiteral("file"));
    const auto date = f.streams->creationDate(QUrl::fromLocalFile(f.path(QStringLiteral("file"))));
    if (!date)
        QSKIP("The file system of the temporary folder keeps no birth times.");
    QVERIFY(*date > f.queue.currentDate().addDays(2));
}

void LinuxFileEventStreamsTest::a_missing_file_has_no_creation_date()
{
    Fixture f;
    f.queue.startDate = QDateTime::currentDateTime();
    QVERIFY(!f.streams->creationDate(QUrl::fromLocalFile(f.path(QStringLiteral("missing")))));
    QVERIFY(!f.streams->creationDate(QUrl()));
}

void LinuxFileEventStreamsTest::a_file_system_without_birth_times_has_no_creation_date()
{
    Fixture f;
    f.queue.startDate = QDateTime::currentDateTime();
    QVERIFY(!f.streams->creationDate(QUrl::fromLocalFile(QStringLiteral("/proc/self/status"))));
}

void LinuxFileEventStreamsTest::a_link_has_its_own_creation_date()
{
    Fixture f;
    f.queue.startDate = QDateTime::currentDateTime();
    f.makeFile(QStringLiteral("file"));
    f.link(QStringLiteral("/missing"), QStringLiteral("link"));
    if (!f.streams->creationDate(QUrl::fromLocalFile(f.path(QStringLiteral("file")))))
        QSKIP("The file system of the temporary folder keeps no birth times.");
    QVERIFY(f.streams->creationDate(QUrl::fromLocalFile(f.path(QStringLiteral("link")))));
}

void LinuxFileEventStreamsTest::a_pipe_has_a_creation_date_and_does_not_block()
{
    Fixture f;
    f.queue.startDate = QDateTime::currentDateTime();
    const QString pipe = f.path(QStringLiteral("pipe.png"));
    QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    f.makeFile(QStringLiteral("file"));
    QCOMPARE(f.streams->creationDate(QUrl::fromLocalFile(pipe)).has_value(),
             f.streams->creationDate(QUrl::fromLocalFile(f.path(QStringLiteral("file")))).has_value());
}

void LinuxFileEventStreamsTest::a_name_that_is_no_utf_8_has_a_creation_date()
{
    Fixture f;
    f.queue.startDate = QDateTime::currentDateTime();
    f.makeFile(QStringLiteral("file"));
    const QByteArray path = QFile::encodeName(f.root.path()) + "/caf\xe9 100%.png";
    QCOMPARE(mknod(path.constData(), S_IFREG | 0600, 0), 0);
    const bool found = f.streams->creationDate(fileURL(path)).has_value();
    QCOMPARE(unlink(path.constData()), 0);
    QCOMPARE(found, f.streams->creationDate(QUrl::fromLocalFile(f.path(QStringLiteral("file")))).has_value());
}

void LinuxFileEventStreamsTest::a_birth_time_that_is_not_known_is_none_data()
{
    QTest::addColumn<bool>("stated");
    QTest::addColumn<qint64>("seconds");
    QTest::addColumn<bool>("isKnown");
    QTest::newRow("now") << true << qint64(1'700'000'000) << true;
    QTest::newRow("long ago") << true << qint64(1) << true;
    QTest::newRow("in a thousand years") << true << qint64(33'000'000'000) << true;
    QTest::newRow("not stated") << false << qint64(1'700'000'000) << false;
    QTest::newRow("zero") << true << qint64(0) << false;
    QTest::newRow("before 1970") << true << qint64(-1) << false;
}

void LinuxFileEventStreamsTest::a_birth_time_that_is_not_known_is_none()
{
    QFETCH(const bool, stated);
    QFETCH(const qint64, seconds);
    QFETCH(const bool, isKnown);
    const auto date = birthTime(stated, seconds, 987'654'321);
    QCOMPARE(date.has_value(), isKnown);
    if (date)
        QCOMPARE(date->toMSecsSinceEpoch(), seconds * 1000 + 987);
}

PARKLET_GUILESS_TEST(LinuxFileEventStreamsTest)
#include "LinuxFileEventStreamsTest.moc"
