// SPDX-License-Identifier: MIT
#include "platform/linux/files/BackgroundUserDefaults.h"
#include "tests/support/TestProgram.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <limits>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

class BackgroundUserDefaultsTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void what_was_set_is_answered_before_it_is_written();
    void what_was_removed_is_gone_before_it_is_written();
    void a_value_is_answered_as_the_file_will_hold_it();
    void a_value_the_file_cannot_hold_is_refused_at_once();
    void of_many_values_only_the_newest_need_be_written();
    void a_refused_write_is_forgotten();
    void the_end_waits_for_the_last_write();
    void an_edit_from_outside_is_seen_by_the_next_read();
    void reads_of_one_moment_answer_alike();
    void a_write_is_seen_within_the_moment();
    void a_write_that_was_refused_is_forgotten_within_the_moment();
    void the_end_waits_half_a_second_for_a_lock();
    void nobody_waits_for_a_lock_longer_than_half_a_second();
    void a_file_nested_deeply_stays_small();
    void what_a_killed_program_left_is_removed();
    void what_another_program_writes_is_left_to_it();

private:
    QByteArray contents() const;

    std::unique_ptr<QTemporaryDir> folder;
    QString path;
};

namespace {

const QString kKey = u"windowEdge"_s;

// Blocks every writer of the folder.
class Hold {
public:
    explicit Hold(const QString &folder)
        : descriptor(::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
        , holds(::flock(descriptor, LOCK_EX) == 0)
    {
    }
    ~Hold() { ::close(descriptor); }
    Hold(const Hold &) = delete;
    Hold &operator=(const Hold &) = delete;

private:
    int descriptor;

public:
    const bool holds;
};

} // namespace

void BackgroundUserDefaultsTest::init()
{
    folder = std::make_unique<QTemporaryDir>();
    path = folder->filePath(u"settings.json"_s);
    QVERIFY(JsonUserDefaults(path).set(kKey, 1));
}

void BackgroundUserDefaultsTest::cleanup()
{
    folder.reset();
}

QByteArray BackgroundUserDefaultsTest::contents() const
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

void BackgroundUserDefaultsTest::what_was_set_is_answered_before_it_is_written()
{
    BackgroundUserDefaults defaults(path);
    const QByteArray before = contents();
    {
        const Hold hold(folder->path());
        QVERIFY(hold.holds);
        QVERIFY(defaults.set(kKey, 2));
        QCOMPARE(defaults.integer(kKey), 2);
        QCOMPARE(contents(), before);
    }
    defaults.synchronize();
    QCOMPARE(contents(), QByteArray("{\n    \"windowEdge\": 2\n}\n"));
    QCOMPARE(defaults.integer(kKey), 2);
}

void BackgroundUserDefaultsTest::what_was_removed_is_gone_before_it_is_written()
{
    BackgroundUserDefaults defaults(path);
    {
        const Hold hold(folder->path());
        QVERIFY(hold.holds);
        QVERIFY(defaults.remove(kKey));
        QVERIFY(!defaults.object(kKey).isValid());
        // An invalid value removes its key as well.
        QVERIFY(defaults.set(kKey, 3));
        QVERIFY(defaults.set(kKey, QVariant()));
        QVERIFY(!defaults.object(kKey).isValid());
    }
    defaults.synchronize();
    QCOMPARE(contents(), QByteArray("{\n}\n"));
}

void BackgroundUserDefaultsTest::a_value_is_answered_as_the_file_will_hold_it()
{
    BackgroundUserDefaults defaults(path);
    const Hold hold(folder->path());
    QVERIFY(hold.holds);
    QVERIFY(defaults.set(kKey, 3));
    QCOMPARE(defaults.object(kKey).typeId(), static_cast<int>(QMetaType::Double));
    QVERIFY(defaults.set(kKey, QStringList{u"a"_s}));
    QCOMPARE(defaults.object(kKey), QVariant(QVariantList{u"a"_s}));
}

void BackgroundUserDefaultsTest::a_value_the_file_cannot_hold_is_refused_at_once()
{
    BackgroundUserDefaults defaults(path);
    QVERIFY(!defaults.set(kKey, std::numeric_limits<double>::quiet_NaN()));
    QCOMPARE(defaults.integer(kKey), 1);
}

void BackgroundUserDefaultsTest::of_many_values_only_the_newest_need_be_written()
{
    const int watch = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    QVERIFY(watch >= 0);
    QVERIFY(::inotify_add_watch(watch, QFile::encodeName(folder->path()).constData(), IN_MOVED_TO) >= 0);
    BackgroundUserDefaults defaults(path);
    {
        const Hold hold(folder->path());
        QVERIFY(hold.holds);
        for (int i = 0; i < 100; ++i)
            QVERIFY(defaults.set(u"size"_s, i));
        QVERIFY(defaults.set(kKey, 0));
    }
    defaults.synchronize();
    QCOMPARE(contents(), QByteArray("{\n    \"size\": 99,\n    \"windowEdge\": 0\n}\n"));

    // One write was already waiting for the folder, and one is for everything after it.
    char events[4096];
    qsizetype writes = 0;
    for (ssize_t size = ::read(watch, events, sizeof events); size > 0; size = ::read(watch, events, sizeof events)) {
        for (ssize_t at = 0; at < size; ++writes)
            at +=
                static_cast<ssize_t>(sizeof(inotify_event)) + reinterpret_cast<const inotify_event *>(events + at)->len;
    }
    ::close(watch);
    QVERIFY2(writes == 1 || writes == 2, QByteArray::number(writes).constData());
}

void BackgroundUserDefaultsTest::a_refused_write_is_forgotten()
{
    QCOMPARE(::chmod(QFile::encodeName(path).constData(), 0444), 0);
    BackgroundUserDefaults defaults(path);
    QVERIFY(defaults.set(kKey, 2));
    defaults.synchronize();
    QCOMPARE(defaults.integer(kKey), 1);
    QCOMPARE(::chmod(QFile::encodeName(path).constData(), 0644), 0);
    QVERIFY(defaults.set(kKey, 3));
    defaults.synchronize();
    QCOMPARE(defaults.integer(kKey), 3);
}

void BackgroundUserDefaultsTest::the_end_waits_for_the_last_write()
{
    for (int i = 0; i < 20; ++i) {
        BackgroundUserDefaults(path).set(kKey, i);
        QCOMPARE(contents(), "{\n    \"windowEdge\": " + QByteArray::number(i) + "\n}\n");
    }
}

void BackgroundUserDefaultsTest::an_edit_from_outside_is_seen_by_the_next_read()
{
    BackgroundUserDefaults defaults(path);
    QVERIFY(defaults.set(kKey, 2));
    defaults.synchronize();
    QVERIFY(JsonUserDefaults(path).set(kKey, 3));
    QCOMPARE(defaults.integer(kKey), 3);
}

void BackgroundUserDefaultsTest::reads_of_one_moment_answer_alike()
{
    BackgroundUserDefaults defaults(path);
    QVERIFY(JsonUserDefaults(path).set(kKey, 2));
    {
        const UserDefaults::ReadsOfOneMoment moment(defaults);
        QCOMPARE(defaults.integer(kKey), 2);
        QVERIFY(JsonUserDefaults(path).set(kKey, 3));
        QVERIFY(JsonUserDefaults(path).set(u"size"_s, 4));
        {
            const UserDefaults::ReadsOfOneMoment inner(defaults);
            QCOMPARE(defaults.integer(kKey), 2);
        }
        QCOMPARE(defaults.integer(kKey), 2);
        QVERIFY(!defaults.object(u"size"_s).isValid());
    }
    QCOMPARE(defaults.integer(kKey), 3);
    QVERIFY(JsonUserDefaults(path).set(kKey, 5));
    const UserDefaults::ReadsOfOneMoment next(defaults);
    QCOMPARE(defaults.integer(kKey), 5);
}

void BackgroundUserDefaultsTest::a_write_is_seen_within_the_moment()
{
    BackgroundUserDefaults defaults(path);
    const UserDefaults::ReadsOfOneMoment moment(defaults);
    QCOMPARE(defaults.integer(kKey), 1);
    QVERIFY(defaults.set(kKey, 2));
    QCOMPARE(defaults.integer(kKey), 2);
    defaults.synchronize();
    QCOMPARE(defaults.integer(kKey), 2);
}

void BackgroundUserDefaultsTest::a_write_that_was_refused_is_forgotten_within_the_moment()
{
    QCOMPARE(::chmod(QFile::encodeName(path).constData(), 0444), 0);
    BackgroundUserDefaults defaults(path);
    const UserDefaults::ReadsOfOneMoment moment(defaults);
    {
        const Hold hold(folder->path());
        QVERIFY(hold.holds);
        QVERIFY(defaults.set(kKey, 2));
        QCOMPARE(defaults.integer(kKey), 2);
    }
    defaults.synchronize();
    QCOMPARE(defaults.integer(kKey), 1);
}

void BackgroundUserDefaultsTest::the_end_waits_half_a_second_for_a_lock()
{
    const int lock = ::open(QFile::encodeName(folder->path()).constData(), O_RDONLY | O_DIRECTORY);
    QCOMPARE(::flock(lock, LOCK_EX), 0);
    const QByteArray before = contents();
    QElapsedTimer clock;
    {
        BackgroundUserDefaults defaults(path);
        QVERIFY(defaults.set(kKey, 2));
        clock.start();
    }
    // A write that blocks would take ten seconds.
    QVERIFY2(clock.elapsed() < 5'000, QByteArray::number(clock.elapsed()).constData());
    QCOMPARE(contents(), before);
    ::close(lock);
}

void BackgroundUserDefaultsTest::nobody_waits_for_a_lock_longer_than_half_a_second()
{
    const int lock = ::open(QFile::encodeName(folder->path()).constData(), O_RDONLY | O_DIRECTORY);
    QCOMPARE(::flock(lock, LOCK_EX), 0);
    const QByteArray before = contents();
    BackgroundUserDefaults defaults(path);
    QVERIFY(defaults.set(kKey, 2));
    QElapsedTimer clock;
    clock.start();
    defaults.synchronize();
    // The write itself continues for ten seconds.
    QVERIFY2(clock.elapsed() >= 450 && clock.elapsed() < 5'000, QByteArray::number(clock.elapsed()).constData());
    QCOMPARE(contents(), before);
    QCOMPARE(defaults.integer(kKey), 2);
    ::close(lock);
    QTRY_COMPARE_WITH_TIMEOUT(contents(), QByteArray("{\n    \"windowEdge\": 2\n}\n"), 20'000);
}

void BackgroundUserDefaultsTest::a_file_nested_deeply_stays_small()
{
    constexpr int kDepth = 1000;
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("{\"other\": " + QByteArray(kDepth, '[') + QByteArray(kDepth, ']') + "}");
    file.close();
    {
        BackgroundUserDefaults defaults(path);
        QVERIFY(defaults.set(kKey, 2));
    }
    QVERIFY(contents().contains("windowEdge"));
    QVERIFY(contents().contains(QByteArray(kDepth, '[')));
    QVERIFY2(contents().size() < 4 * kDepth, QByteArray::number(contents().size()).constData());
}

void BackgroundUserDefaultsTest::what_a_killed_program_left_is_removed()
{
    QFile left(path + u".new"_s);
    QVERIFY(left.open(QIODevice::WriteOnly));
    const BackgroundUserDefaults defaults(path);
    QVERIFY(!left.exists());
}

void BackgroundUserDefaultsTest::what_another_program_writes_is_left_to_it()
{
    QFile left(path + u".new"_s);
    QVERIFY(left.open(QIODevice::WriteOnly));
    const int lock = ::open(QFile::encodeName(folder->path()).constData(), O_RDONLY | O_DIRECTORY);
    QCOMPARE(::flock(lock, LOCK_EX), 0);
    {
        const BackgroundUserDefaults defaults(path);
        QVERIFY(left.exists());
    }
    ::close(lock);
}

PARKLET_GUILESS_TEST(BackgroundUserDefaultsTest)
#include "BackgroundUserDefaultsTest.moc"
