// SPDX-License-Identifier: MIT
#include "platform/linux/files/RegularFile.h"
#include "tests/platform/thumbnails/GeneratorFixture.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QFile>
#include <QScopedValueRollback>

#include <cerrno>
#include <cstdio>
#include <sys/inotify.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

bool grantsWatches = true;

} // namespace

// Replaces the system's function, which fails only after all programs of the user together have reached their limit.
extern "C" int inotify_init1(int flags) noexcept
{
    if (grantsWatches)
        return static_cast<int>(::syscall(SYS_inotify_init1, flags));
    errno = EMFILE;
    return -1;
}

class GrowingFilesTest : public QObject {
    Q_OBJECT

private slots:
    void a_png_still_being_written_comes_when_its_writer_closes_it();
    void a_jpeg_still_being_written_is_shown_in_part_and_then_whole();
    void an_empty_file_named_like_an_image_comes_when_it_is_written();
    void a_file_still_being_written_comes_when_another_takes_its_place();
    void a_link_to_a_file_still_being_written_comes_when_that_is_closed();
    void a_file_that_was_finished_before_the_watch_comes_too_data();
    void a_file_that_was_finished_before_the_watch_comes_too();
    void a_writer_may_rest_for_a_minute_data();
    void a_writer_may_rest_for_a_minute();
    void a_file_that_goes_while_it_is_waited_for_is_not_answered_again();
    void a_file_that_is_closed_again_and_again_and_never_whole_is_given_up();
    void an_empty_file_of_another_kind_is_not_waited_for();
};

void GrowingFilesTest::a_png_still_being_written_comes_when_its_writer_closes_it()
{
    GeneratorFixture f;
    const QByteArray png = SampleFiles::picture("png", {800, 400});
    const QByteArray path = f.samples.path("a.png");
    QFile writer(QFile::decodeName(path));
    QVERIFY(writer.open(QFile::WriteOnly | QFile::Unbuffered));
    writer.write(png.left(png.size() / 2));
    f.changeNow(path);
    f.request(path);
    f.waitForWriter(1);
    QVERIFY(!f.answers.last()); // the shelf shows an icon meanwhile

    writer.write(png.mid(png.size() / 2));
    f.queue.advance(3600);
    QCoreApplication::processEvents();
    QCOMPARE(f.answers.count(), 1);
    QCOMPARE(f.queue.timerCount(), 0);
    writer.close();
    VERIFY_ANSWERS(f, 2);
    QVERIFY(f.answers.last());
    QCOMPARE(f.answers.last()->size(), QSize(72, 36));
}

void GrowingFilesTest::a_jpeg_still_being_written_is_shown_in_part_and_then_whole()
{
    GeneratorFixture f;
    const QByteArray jpeg = SampleFiles::picture("jpeg", {800, 400});
    const QByteArray path = f.samples.file("a.jpg", jpeg.left(jpeg.size() / 2));
    f.changeNow(path);
    f.request(path);
    f.waitForWriter(1);
    QVERIFY(f.answers.last());
    const QImage part = *f.answers.last();
    f.samples.file("a.jpg", jpeg);
    VERIFY_ANSWERS(f, 2);
    QVERIFY(f.answers.last());
    QCOMPARE(f.answers.last()->size(), part.size());
    QVERIFY(*f.answers.last() != part);
}

void GrowingFilesTest::an_empty_file_named_like_an_image_comes_when_it_is_written()
{
    GeneratorFixture f;
    for (const QByteArray &name : {QByteArray("a.png"), QByteArray("a.jpg")}) {
        const QByteArray path = f.samples.file(name, "");
        f.changeNow(path);
        const qsizetype before = f.answers.count();
        f.request(path);
        f.waitForWriter(before + 1);
        f.samples.file(name, SampleFiles::picture("png", {80, 40}));
        VERIFY_ANSWERS(f, before + 2);
        QVERIFY(f.answers.last());
    }
}

void GrowingFilesTest::a_file_still_being_written_comes_when_another_takes_its_place()
{
    GeneratorFixture f;
    const QByteArray path = f.samples.file("a.png", "");
    const QByteArray other = f.samples.file("other", SampleFiles::picture("png", {80, 40}));
    f.changeNow(path);
    f.request(path);
    f.waitForWriter(1);
    QCOMPARE(::rename(other.constData(), path.constData()), 0);
    VERIFY_ANSWERS(f, 2);
    QVERIFY(f.answers.last());
}

void GrowingFilesTest::a_link_to_a_file_still_being_written_comes_when_that_is_closed()
{
    GeneratorFixture f;
    const QByteArray target = f.samples.file("target", "");
    const QByteArray path = f.samples.path("a.png");
    QCOMPARE(::symlink(target.constData(), path.constData()), 0);
    f.changeNow(target);
    f.request(path);
    f.waitForWriter(1);
    f.samples.file("target", SampleFiles::picture("png", {80, 40}));
    VERIFY_ANSWERS(f, 2);
    QVERIFY(f.answers.last());
}

void GrowingFilesTest::a_file_that_was_finished_before_the_watch_comes_too_data()
{
    QTest::addColumn<bool>("isGranted");
    QTest::newRow("with a watch") << true;
    QTest::newRow("without one") << false;
}

void GrowingFilesTest::a_file_that_was_finished_before_the_watch_comes_too()
{
    QFETCH(const bool, isGranted);
    GeneratorFixture f;
    const QScopedValueRollback watches(grantsWatches, isGranted);
    const QByteArray path = f.samples.file("a.png", "");
    f.changeNow(path);
    f.request(path);
    QTRY_COMPARE_WITH_TIMEOUT(f.queue.pendingCount(), 1, kPatience);
    f.samples.file("a.png", SampleFiles::picture("png", {80, 40}));
    f.queue.runPending();
    VERIFY_ANSWERS(f, 2);
    QVERIFY(f.answers.last());
}

void GrowingFilesTest::a_writer_may_rest_for_a_minute_data()
{
    QTest::addColumn<qint64>("rest");
    QTest::addColumn<bool>("isWaitedFor");
    QTest::newRow("59 s") << qint64(59) << true;
    QTest::newRow("60 s") << qint64(60) << false;
}

void GrowingFilesTest::a_writer_may_rest_for_a_minute()
{
    QFETCH(const qint64, rest);
    QFETCH(const bool, isWaitedFor);
    GeneratorFixture f;
    const QByteArray path = f.samples.file("a.png", SampleFiles::picture("png", {80, 40}).left(60));
    SampleFiles::setModified(path, f.queue.currentDate().toSecsSinceEpoch() - rest);
    const FileState state = RegularFile::open(path)->state();
    f.request(path);
    if (isWaitedFor)
        f.waitForWriter(1);
    VERIFY_ANSWERS(f, 1);
    QCOMPARE(f.queue.pendingCount(), 0);
    f.samples.file("a.png", SampleFiles::picture("png", {80, 40}));
    f.request(path);
    VERIFY_ANSWERS(f, isWaitedFor ? 3 : 2);
    QCOMPARE(f.cache.hasFailure(path, state), !isWaitedFor);
}

void GrowingFilesTest::a_file_that_goes_while_it_is_waited_for_is_not_answered_again()
{
    GeneratorFixture f;
    const QByteArray path = f.samples.file("a.png", "");
    f.changeNow(path);
    f.request(path);
    f.waitForWriter(1);
    QCOMPARE(::unlink(path.constData()), 0);
    QCoreApplication::processEvents();
    // This request is served after the first.
    f.request(f.samples.file("b.png", SampleFiles::picture("png", {80, 40})));
    VERIFY_ANSWERS(f, 2);
    QVERIFY(f.answers.last());
    QCOMPARE(f.queue.pendingCount(), 0);
}

void GrowingFilesTest::a_file_that_is_closed_again_and_again_and_never_whole_is_given_up()
{
    GeneratorFixture f;
    const QByteArray path = f.samples.file("a.png", "");
    f.changeNow(path);
    // The completion is deleted with its request.
    auto request = std::make_shared<int>(0);
    const std::weak_ptr<int> open = request;
    f.generator.generate(SampleFiles::url(path), 72, 1,
                         [answer = f.answers.next(), keep = std::move(request)](auto image) { answer(image); });
    for (int i = 0; i < 100; ++i) {
        f.waitForWriter(1);
        QVERIFY(!open.expired());
        f.changeNow(path); // causes an event, as a writer does that closes the file
    }
    QTRY_VERIFY_WITH_TIMEOUT(open.expired(), kPatience);
    QCOMPARE(f.answers.count(), 1);
    QCOMPARE(f.queue.pendingCount(), 0);
}

void GrowingFilesTest::an_empty_file_of_another_kind_is_not_waited_for()
{
    GeneratorFixture f;
    const QByteArray path = f.samples.file("a.txt", "");
    f.changeNow(path);
    f.request(path);
    VERIFY_ANSWERS(f, 1);
    QVERIFY(!f.answers.last());
    QCOMPARE(f.queue.pendingCount(), 0);
}

PARKLET_TEST(GrowingFilesTest)
#include "GrowingFilesTest.moc"
