// SPDX-License-Identifier: MIT
#include "platform/linux/files/LinuxFileEventStreams.h"

#include "tests/platform/files/StreamFixture.h"
#include "tests/support/NoDescriptors.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <optional>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

// Which folder a stream follows when the folder, its parents or links in its path change.
class FollowedFolderTest : public QObject {
    Q_OBJECT

private slots:
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
};

namespace {

using Fixture = StreamFixture;

} // namespace

void FollowedFolderTest::a_folder_that_does_not_exist_yet_is_followed_once_it_does()
{
    Fixture f;
    f.follow(kDesktop);
    f.makeFolder(kDesktop);
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(kDesktop));
}

void FollowedFolderTest::a_path_that_does_not_exist_yet_is_followed_once_it_does()
{
    Fixture f;
    const QString deep = u"home/user/Desktop"_s;
    f.follow(deep);
    f.makeFolder(u"home"_s);
    QCOMPARE(f.settle(), 1);
    f.makeFolder(deep);
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(deep));
}

void FollowedFolderTest::a_folder_that_was_deleted_and_made_again_is_followed()
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

void FollowedFolderTest::a_folder_that_was_deleted_while_in_use_and_made_again_is_followed()
{
    Fixture f;
    f.makeFolder(kDesktop);
    f.makeFile(u"Desktop/file"_s);
    f.follow(kDesktop);
    const int user = open(QFile::encodeName(f.path(kDesktop)).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    QVERIFY(user >= 0);
    f.removeFolder(kDesktop);
    f.makeFolder(kDesktop);
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(kDesktop));
    close(user);
}

void FollowedFolderTest::an_empty_folder_that_was_deleted_while_in_use_is_missed_once_nobody_uses_it()
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

void FollowedFolderTest::a_folder_that_was_renamed_is_followed_no_more_but_its_successor_is()
{
    Fixture f;
    const QString old = u"old"_s;
    f.makeFolder(kDesktop);
    f.follow(kDesktop);
    f.rename(kDesktop, old);
    QCOMPARE(f.settle(), 1);
    f.makeFolder(kDesktop);
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(kDesktop));

    f.makeFile(u"old/file"_s);
    QCoreApplication::processEvents();
    QCOMPARE(f.queue.timerCount(), 0);
}

void FollowedFolderTest::a_folder_whose_parent_was_renamed_and_made_again_is_followed()
{
    Fixture f;
    const QString deep = u"home/Desktop"_s;
    f.makeFolder(deep);
    f.follow(deep);
    f.rename(u"home"_s, u"elsewhere"_s);
    QCOMPARE(f.settle(), 1);
    f.makeFolder(deep);
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(deep));
}

void FollowedFolderTest::a_folder_that_takes_the_place_of_a_file_is_followed()
{
    Fixture f;
    f.makeFile(kDesktop);
    f.follow(kDesktop);
    QVERIFY(QFile::remove(f.path(kDesktop)));
    f.makeFolder(kDesktop);
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(kDesktop));
}

void FollowedFolderTest::a_link_to_a_folder_is_followed_to_its_target()
{
    Fixture f;
    f.makeFolder(u"target"_s);
    f.link(f.path(u"target"_s), kDesktop);
    f.follow(kDesktop);
    QVERIFY(f.isFollowed(kDesktop));
    QVERIFY(f.isFollowed(u"target"_s));
}

void FollowedFolderTest::a_link_that_gets_another_target_is_followed_there()
{
    Fixture f;
    f.makeFolder(u"first"_s);
    f.link(f.path(u"first"_s), kDesktop);
    f.follow(kDesktop);
    QVERIFY(QFile::remove(f.path(kDesktop)));
    f.link(f.path(u"second"_s), kDesktop);
    QCOMPARE(f.settle(), 1);
    f.makeFolder(u"second"_s);
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(u"second"_s));
}

void FollowedFolderTest::a_links_target_that_was_deleted_and_made_again_is_followed()
{
    Fixture f;
    const QString target = u"disk/target"_s;
    f.makeFolder(target);
    f.link(f.path(target), kDesktop);
    f.follow(kDesktop);
    f.removeFolder(target);
    QCOMPARE(f.settle(), 1);
    f.makeFolder(target);
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(kDesktop));
}

void FollowedFolderTest::a_link_that_is_replaced_in_one_step_is_followed_to_its_new_target()
{
    Fixture f;
    f.makeFolder(u"first"_s);
    f.makeFolder(u"second"_s);
    f.link(f.path(u"first"_s), kDesktop);
    f.follow(kDesktop);
    f.link(f.path(u"second"_s), u"new"_s);
    QCOMPARE(::rename(QFile::encodeName(f.path(u"new"_s)).constData(), QFile::encodeName(f.path(kDesktop)).constData()),
             0);
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(u"second"_s));
    f.makeFile(u"first/file"_s);
    QCoreApplication::processEvents();
    QCOMPARE(f.queue.timerCount(), 0);
}

void FollowedFolderTest::a_relative_link_is_followed()
{
    Fixture f;
    f.makeFolder(u"home"_s);
    f.makeFolder(u"disk/target"_s);
    f.link(u".././/disk/target"_s, u"home/Desktop"_s);
    f.follow(u"home/Desktop"_s);
    QVERIFY(f.isFollowed(u"disk/target"_s));
}

void FollowedFolderTest::links_in_a_circle_lead_nowhere_until_they_are_replaced()
{
    Fixture f;
    f.link(kDesktop, kDesktop);
    f.follow(kDesktop);
    QVERIFY(QFile::remove(f.path(kDesktop)));
    f.makeFolder(kDesktop);
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(kDesktop));
}

void FollowedFolderTest::a_folder_that_may_not_be_read_is_followed_once_it_may_data()
{
    QTest::addColumn<QString>("closed");
    QTest::newRow("itself") << u"home/Desktop"_s;
    QTest::newRow("the way to it") << u"home"_s;
}

void FollowedFolderTest::a_folder_that_may_not_be_read_is_followed_once_it_may()
{
    QFETCH(const QString, closed);
    Fixture f;
    const OrdinaryUser user(f.root.path());
    const QString deep = u"home/Desktop"_s;
    f.makeFolder(deep);
    QVERIFY(QFile::setPermissions(f.path(closed), {}));
    f.follow(deep);
    QCoreApplication::processEvents();
    QCOMPARE(f.queue.timerCount(), 0);

    QVERIFY(QFile::setPermissions(f.path(closed), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(deep));

    // The stream keeps a followed folder when it loses the permission.
    QVERIFY(QFile::setPermissions(f.path(deep), {}));
    QCOMPARE(f.settle(), 1);
    QVERIFY(QFile::setPermissions(f.path(deep), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(deep));
}

void FollowedFolderTest::a_folder_that_may_not_be_read_is_followed_once_another_takes_its_place()
{
    Fixture f;
    const OrdinaryUser user(f.root.path());
    f.makeFolder(kDesktop);
    QVERIFY(QFile::setPermissions(f.path(kDesktop), {}));
    f.follow(kDesktop);
    f.rename(kDesktop, u"old"_s);
    QCOMPARE(f.settle(), 1);
    f.makeFolder(kDesktop);
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(kDesktop));
    QVERIFY(QFile::setPermissions(f.path(u"old"_s), QFile::ReadOwner | QFile::ExeOwner));
}

void FollowedFolderTest::a_name_to_come_where_nothing_may_be_read_is_looked_for_every_five_seconds()
{
    Fixture f;
    const OrdinaryUser user(f.root.path());
    const QString deep = u"home/Desktop"_s;
    f.makeFolder(u"home"_s);
    QVERIFY(QFile::setPermissions(f.path(u"home"_s), QFile::WriteOwner | QFile::ExeOwner));
    f.follow(deep);
    QCOMPARE(f.queue.timerCount(), 1);
    f.makeFolder(deep);
    f.queue.advance(5);
    QCOMPARE(f.calls, 1);
    QCOMPARE(f.queue.timerCount(), 0);
    QVERIFY(f.isFollowed(deep));
    QVERIFY(QFile::setPermissions(f.path(u"home"_s), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

void FollowedFolderTest::more_changes_than_the_kernel_keeps_are_told_once()
{
    QFile limitFile(u"/proc/sys/fs/inotify/max_queued_events"_s);
    QVERIFY(limitFile.open(QFile::ReadOnly));
    const int limit = limitFile.readAll().trimmed().toInt();
    if (limit > 100'000)
        QSKIP("This kernel keeps too many events to overflow them here.");

    Fixture f;
    f.makeFolder(kDesktop);
    f.follow(kDesktop);
    const QByteArray path = QFile::encodeName(f.path(u"Desktop/file"_s));
    for (int i = 0; i <= limit / 2 + 1; ++i) {
        QCOMPARE(mknod(path.constData(), S_IFREG | 0600, 0), 0);
        QCOMPARE(unlink(path.constData()), 0);
    }
    QCOMPARE(f.settle(), 1);
    QVERIFY(f.isFollowed(kDesktop));
}

void FollowedFolderTest::without_a_watch_from_the_system_the_folder_is_looked_at_every_five_seconds()
{
    Fixture f;
    f.makeFolder(kDesktop);
    std::optional<NoDescriptors> noDescriptors(std::in_place);
    f.follow(kDesktop);
    QCOMPARE(f.queue.timerCount(), 1);

    f.queue.advance(5);
    QCOMPARE(f.calls, 0);
    QVERIFY(QDir().mkdir(f.path(u"Desktop/first"_s)));
    f.queue.advance(4.9);
    QCOMPARE(f.calls, 0);
    f.queue.advance(0.1);
    QCOMPARE(f.calls, 1);
    f.queue.advance(5);
    QCOMPARE(f.calls, 1);

    // Once the system grants a watch, the stream stops polling.
    QVERIFY(QDir().mkdir(f.path(u"Desktop/second"_s)));
    noDescriptors.reset();
    f.queue.advance(5);
    QCOMPARE(f.calls, 2);
    QCOMPARE(f.queue.timerCount(), 0);
    QVERIFY(f.isFollowed(kDesktop));
}

PARKLET_GUILESS_TEST(FollowedFolderTest)
#include "FollowedFolderTest.moc"
