// SPDX-License-Identifier: MIT
#include "platform/linux/files/RegularFile.h"

#include "tests/support/OrdinaryUser.h"
#include "tests/support/SampleFiles.h"
#include "tests/support/TestProgram.h"

#include <QFileInfo>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

class RegularFileTest : public QObject {
    Q_OBJECT

private slots:
    void a_regular_file_is_read_from_any_offset();
    void a_name_that_is_no_utf8_is_opened();
    void a_link_to_a_file_is_followed();
    void what_is_no_regular_file_is_not_opened();
    void an_unreadable_file_is_not_opened();
    void a_change_shows_in_the_current_state_only();
};

void RegularFileTest::a_regular_file_is_read_from_any_offset()
{
    const SampleFiles samples;
    const auto file = RegularFile::open(samples.file("a", "hello"));
    QVERIFY(file);
    QCOMPARE(file->read(0, 5), QByteArray("hello"));
    QCOMPARE(file->read(3, 100), QByteArray("lo"));
    QCOMPARE(file->read(9, 1), QByteArray());
    QCOMPARE(file->state().size, 5);
    QCOMPARE(file->state().modifiedSeconds, 1'600'000'000);
}

void RegularFileTest::a_name_that_is_no_utf8_is_opened()
{
    const SampleFiles samples;
    QVERIFY(RegularFile::open(samples.file("caf\xe9\n", "x")));
}

void RegularFileTest::a_link_to_a_file_is_followed()
{
    const SampleFiles samples;
    const QByteArray target = samples.file("a", "hello");
    const QByteArray link = samples.path("link");
    QCOMPARE(::symlink(target.constData(), link.constData()), 0);
    QVERIFY(RegularFile::open(link));
}

void RegularFileTest::what_is_no_regular_file_is_not_opened()
{
    const SampleFiles samples;
    const QByteArray fifo = samples.path("fifo");
    QCOMPARE(::mkfifo(fifo.constData(), 0600), 0);
    const QByteArray dangling = samples.path("dangling");
    QCOMPARE(::symlink("/nowhere/at/all", dangling.constData()), 0);
    const QByteArray circle = samples.path("circle");
    QCOMPARE(::symlink(circle.constData(), circle.constData()), 0);
    for (const QByteArray &path : {fifo, dangling, circle, QByteArray("/dev/zero"), QByteArray("/tmp"),
                                   samples.path("missing"), QByteArray(), QByteArray("/dev/zero\0", 10)})
        QVERIFY2(!RegularFile::open(path), path.constData());
}

void RegularFileTest::an_unreadable_file_is_not_opened()
{
    const SampleFiles samples;
    const QByteArray readable = samples.file("a", "hello");
    const QByteArray unreadable = samples.file("b", "hello");
    QCOMPARE(::chmod(readable.constData(), 0444), 0);
    QCOMPARE(::chmod(unreadable.constData(), 0), 0);
    const OrdinaryUser user(QFileInfo(QFile::decodeName(readable)).path());
    QVERIFY(RegularFile::open(readable));
    QVERIFY(!RegularFile::open(unreadable));
}

void RegularFileTest::a_change_shows_in_the_current_state_only()
{
    const SampleFiles samples;
    const QByteArray path = samples.file("a", "hello");
    const auto file = RegularFile::open(path);
    QVERIFY(file);
    QCOMPARE(file->currentState(), file->state());
    SampleFiles::setModified(path, 1'600'000'000, 5);
    QVERIFY(file->currentState() != file->state());
    QCOMPARE(file->state().modifiedNanoseconds, 0);
    QCOMPARE(file->currentState().modifiedNanoseconds, 5);
}

PARKLET_GUILESS_TEST(RegularFileTest)
#include "RegularFileTest.moc"
