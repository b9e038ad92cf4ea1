// SPDX-License-Identifier: MIT
#include "platform/common/SessionLock.h"
#include "tests/support/TestProgram.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

class SessionLockTest : public QObject {
    Q_OBJECT

private slots:
    void the_first_one_has_it_and_no_other();
    void it_is_free_again_once_the_first_one_has_gone();
    void an_old_lock_is_a_lock();
    void a_file_that_names_no_process_locks_nobody_out();
    void the_file_of_a_process_that_has_gone_locks_nobody_out();
    void where_nothing_can_be_locked_everybody_may_run();

private:
    QString path() const { return folder.filePath(u"session.lock"_s); }

    const QTemporaryDir folder;
};

void SessionLockTest::the_first_one_has_it_and_no_other()
{
    SessionLock first(path());
    QVERIFY(first.take());
    QVERIFY(!SessionLock(path()).take());
}

void SessionLockTest::it_is_free_again_once_the_first_one_has_gone()
{
    auto first = std::make_unique<SessionLock>(path());
    QVERIFY(first->take());
    first.reset();
    QVERIFY(SessionLock(path()).take());
}

void SessionLockTest::an_old_lock_is_a_lock()
{
    SessionLock first(path());
    QVERIFY(first.take());
    QFile file(path());
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(QDateTime::currentDateTime().addDays(-30), QFile::FileModificationTime));
    file.close();
    QVERIFY(!SessionLock(path()).take());
}

void SessionLockTest::a_file_that_names_no_process_locks_nobody_out()
{
    QFile file(path());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    SessionLock lock(path());
    QVERIFY(lock.take());
    QVERIFY(!SessionLock(path()).take());
}

void SessionLockTest::the_file_of_a_process_that_has_gone_locks_nobody_out()
{
    // No process has the highest possible number.
    QFile file(path());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("2147483647\nparklet\n" + QSysInfo::machineHostName().toUtf8() + '\n');
    file.close();
    QVERIFY(SessionLock(path()).take());
}

void SessionLockTest::where_nothing_can_be_locked_everybody_may_run()
{
    const QString nowhere = folder.filePath(u"no folder/session.lock"_s);
    SessionLock first(nowhere);
    QVERIFY(first.take());
    QVERIFY(SessionLock(nowhere).take());
}

PARKLET_TEST(SessionLockTest)

#include "SessionLockTest.moc"
