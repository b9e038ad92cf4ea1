// SPDX-License-Identifier: MIT
#include "platform/linux/files/LinuxFileEventStreams.h"

#include "platform/FileURLs.h"
#include "tests/platform/files/StreamFixture.h"
#include "tests/support/TestProgram.h"

#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

// The creation dates of files.
class CreationDateTest : public QObject {
    Q_OBJECT

private slots:
    void a_new_file_has_a_creation_date();
    void a_copy_that_keeps_its_modification_date_is_as_old_as_that();
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

using Fixture = StreamFixture;

} // namespace

void CreationDateTest::a_new_file_has_a_creation_date()
{
    Fixture f;
    f.queue.startDate = QDateTime::currentDateTime();
    f.makeFile(u"file"_s);
    const auto date = f.streams->creationDate(QUrl::fromLocalFile(f.path(u"file"_s)));
    if (!date)
        QSKIP("The file system of the temporary folder keeps no birth times.");
    QVERIFY(qAbs(date->secsTo(f.queue.startDate)) < 60);

    // A later write does not change it.
    QFile file(f.path(u"file"_s));
    QVERIFY(file.open(QFile::Append));
    QVERIFY(file.setFileTime(date->addDays(1), QFile::FileModificationTime));
    QCOMPARE(f.streams->creationDate(QUrl::fromLocalFile(file.fileName())), date);
}

void CreationDateTest::a_copy_that_keeps_its_modification_date_is_as_old_as_that()
{
    Fixture f;
    f.makeFile(u"copy"_s);
    QFile copy(f.path(u"copy"_s));
    if (!f.streams->creationDate(QUrl::fromLocalFile(copy.fileName())))
        QSKIP("The file system of the temporary folder keeps no birth times.");
    const auto old = QDateTime::fromSecsSinceEpoch(1'000'000);
    QVERIFY(copy.open(QFile::Append));
    QVERIFY(copy.setFileTime(old, QFile::FileModificationTime));
    QCOMPARE(f.streams->creationDate(QUrl::fromLocalFile(copy.fileName())), old);
}

void CreationDateTest::a_file_keeps_its_creation_date_wherever_it_is_moved()
{
    constexpr qint64 kLater = 20; // milliseconds
    Fixture f;
    f.makeFolder(kDesktop);
    f.makeFile(u"file"_s);
    const QString first = f.path(u"file"_s);
    const auto date = f.streams->creationDate(QUrl::fromLocalFile(first));
    if (!date)
        QSKIP("The file system of the temporary folder keeps no birth times.");
    const auto wasChangedLater = [&first, &date] {
        return QFile::setPermissions(first, QFile::ReadOwner) &&
               date->msecsTo(QFileInfo(first).metadataChangeTime()) > kLater;
    };
    QTRY_VERIFY_WITH_TIMEOUT(wasChangedLater(), kPatience);
    f.rename(u"file"_s, u"Desktop/file.png"_s);
    QCOMPARE(f.streams->creationDate(QUrl::fromLocalFile(f.path(u"Desktop/file.png"_s))), date);
}

void CreationDateTest::a_creation_date_is_as_the_file_states_it_whatever_the_clock_says()
{
    Fixture f; // its clock is at a day years ago
    f.makeFile(u"file"_s);
    const auto date = f.streams->creationDate(QUrl::fromLocalFile(f.path(u"file"_s)));
    if (!date)
        QSKIP("The file system of the temporary folder keeps no birth times.");
    QVERIFY(*date > f.queue.currentDate().addDays(2));
}

void CreationDateTest::a_missing_file_has_no_creation_date()
{
    Fixture f;
    f.queue.startDate = QDateTime::currentDateTime();
    QVERIFY(!f.streams->creationDate(QUrl::fromLocalFile(f.path(u"missing"_s))));
    QVERIFY(!f.streams->creationDate(QUrl()));
}

void CreationDateTest::a_file_system_without_birth_times_has_no_creation_date()
{
    Fixture f;
    f.queue.startDate = QDateTime::currentDateTime();
    QVERIFY(!f.streams->creationDate(QUrl::fromLocalFile(u"/proc/self/status"_s)));
}

void CreationDateTest::a_link_has_its_own_creation_date()
{
    Fixture f;
    f.queue.startDate = QDateTime::currentDateTime();
    f.makeFile(u"file"_s);
    f.link(u"/missing"_s, u"link"_s);
    if (!f.streams->creationDate(QUrl::fromLocalFile(f.path(u"file"_s))))
        QSKIP("The file system of the temporary folder keeps no birth times.");
    QVERIFY(f.streams->creationDate(QUrl::fromLocalFile(f.path(u"link"_s))));
}

void CreationDateTest::a_pipe_has_a_creation_date_and_does_not_block()
{
    Fixture f;
    f.queue.startDate = QDateTime::currentDateTime();
    const QString pipe = f.path(u"pipe.png"_s);
    QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    f.makeFile(u"file"_s);
    QCOMPARE(f.streams->creationDate(QUrl::fromLocalFile(pipe)).has_value(),
             f.streams->creationDate(QUrl::fromLocalFile(f.path(u"file"_s))).has_value());
}

void CreationDateTest::a_name_that_is_no_utf_8_has_a_creation_date()
{
    Fixture f;
    f.queue.startDate = QDateTime::currentDateTime();
    f.makeFile(u"file"_s);
    const QByteArray path = QFile::encodeName(f.root.path()) + "/caf\xe9 100%.png";
    QCOMPARE(mknod(path.constData(), S_IFREG | 0600, 0), 0);
    const bool found = f.streams->creationDate(fileURL(path)).has_value();
    QCOMPARE(unlink(path.constData()), 0);
    QCOMPARE(found, f.streams->creationDate(QUrl::fromLocalFile(f.path(u"file"_s))).has_value());
}

void CreationDateTest::a_birth_time_that_is_not_known_is_none_data()
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

void CreationDateTest::a_birth_time_that_is_not_known_is_none()
{
    QFETCH(const bool, stated);
    QFETCH(const qint64, seconds);
    QFETCH(const bool, isKnown);
    const auto date = birthTime(stated, seconds, 987'654'321);
    QCOMPARE(date.has_value(), isKnown);
    if (date)
        QCOMPARE(date->toMSecsSinceEpoch(), seconds * 1000 + 987);
}

PARKLET_GUILESS_TEST(CreationDateTest)
#include "CreationDateTest.moc"
