// SPDX-License-Identifier: MIT
#include "platform/linux/thumbnails/LinuxThumbnailGenerator.h"

#include "platform/linux/files/RegularFile.h"
#include "tests/platform/thumbnails/DiskCache.h"
#include "tests/support/SampleFiles.h"
#include "tests/support/TestProgram.h"
#include "tests/support/VirtualPlatform.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QScopedValueRollback>
#include <QSet>
#include <QTest>

#include <cerrno>
#include <sys/inotify.h>
#include <sys/stat.h>
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

class LinuxThumbnailGeneratorTest : public QObject {
    Q_OBJECT

private slots:
    void a_picture_fits_the_points_at_their_scale_data();
    void a_picture_fits_the_points_at_their_scale();
    void the_points_are_those_of_the_picture_as_it_is_stored();
    void a_completion_is_called_later();
    void who_waits_longer_than_a_blink_is_told();
    void bad_input_is_answered_with_nothing_data();
    void bad_input_is_answered_with_nothing();
    void names_of_any_bytes_are_served();
    void a_drawing_is_rendered();
    void an_entry_of_the_cache_is_used();
    void a_decoded_photo_is_kept_in_the_cache();
    void a_small_picture_is_not_kept();
    void a_file_just_changed_is_neither_looked_up_nor_kept();
    void a_broken_file_is_decoded_once_only();
    void a_file_of_the_cache_itself_is_decoded_but_not_kept();
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
    void requests_for_the_same_pixels_that_wait_are_served_together();
    void requests_for_other_pixels_are_served_apart();
    void every_completion_is_called_once_when_the_generator_goes();
};

namespace {

// The results of the completions.
class Answers {
public:
    ThumbnailGenerator::Completion next()
    {
        return [this](std::optional<Thumbnail> thumbnail) {
            images.append(thumbnail ? std::optional(thumbnail->image) : std::nullopt);
            points.append(thumbnail ? thumbnail->size : QSizeF());
        };
    }

    qsizetype count() const { return images.size(); }

    std::optional<QImage> last() const { return images.isEmpty() ? std::nullopt : images.last(); }

    // The number of different pictures among them.
    qsizetype different() const
    {
        QSet<qint64> keys;
        for (const auto &image : images)
            keys.insert(image ? image->cacheKey() : 0);
        return keys.size();
    }

    QList<QSize> sizes() const
    {
        QList<QSize> list;
        for (const auto &image : images)
            list.append(image.value_or(QImage()).size());
        return list;
    }

    QList<QSizeF> points;

private:
    QList<std::optional<QImage>> images;
};

constexpr int kPatience = 20'000; // milliseconds

struct Fixture {
    SampleFiles samples;
    VirtualMainQueue queue;
    Answers answers;
    QByteArray cacheFolder = samples.path("cache/thumbnails");
    DiskCache cache{cacheFolder};
    LinuxThumbnailGenerator generator{queue, std::make_shared<FileHelpers>(queue), cacheFolder};

    void request(const QByteArray &path, double edge = 72, double scale = 1)
    {
        generator.generate(SampleFiles::url(path), edge, scale, answers.next());
    }

    // Waits until there are `count` answers, one of them for an unreadable file whose writer is then waited for.
    void waitForWriter(qsizetype count)
    {
        QTRY_COMPARE_WITH_TIMEOUT(queue.pendingCount(), 1, kPatience);
        QCOMPARE(answers.count(), count);
        queue.runPending();
        QTRY_COMPARE_WITH_TIMEOUT(generator.awaitedWriters(), 1, kPatience);
    }

    // Sets a file's modification time to a moment before the queue's time.
    void changeNow(const QByteArray &path) const
    {
        SampleFiles::setModified(path, queue.currentDate().toSecsSinceEpoch() - 1, 900'000'000);
    }
};

#define VERIFY_ANSWERS(f, number) QTRY_COMPARE_WITH_TIMEOUT((f).answers.count(), qsizetype(number), kPatience)

} // namespace

void LinuxThumbnailGeneratorTest::a_picture_fits_the_points_at_their_scale_data()
{
    QTest::addColumn<QSize>("original");
    QTest::addColumn<double>("edge");
    QTest::addColumn<double>("scale");
    QTest::addColumn<QSizeF>("points");
    QTest::addColumn<QSize>("pixels");
    QTest::newRow("1x") << QSize(1920, 1080) << 72.0 << 1.0 << QSizeF(72, 41) << QSize(72, 41);
    QTest::newRow("2x") << QSize(1920, 1080) << 72.0 << 2.0 << QSizeF(72, 41) << QSize(144, 81);
    QTest::newRow("1.5x") << QSize(1080, 1920) << 72.0 << 1.5 << QSizeF(41, 72) << QSize(61, 108);
    QTest::newRow("square") << QSize(900, 900) << 72.0 << 1.0 << QSizeF(72, 72) << QSize(72, 72);
    QTest::newRow("not blown up") << QSize(30, 20) << 72.0 << 2.0 << QSizeF(72, 48) << QSize(30, 20);
    QTest::newRow("beyond the cache") << QSize(1600, 1200) << 1500.0 << 1.0 << QSizeF(1500, 1125) << QSize(1500, 1125);
}

void LinuxThumbnailGeneratorTest::a_picture_fits_the_points_at_their_scale()
{
    QFETCH(QSize, original);
    QFETCH(double, edge);
    QFETCH(double, scale);
    Fixture f;
    f.request(f.samples.file("a.png", SampleFiles::picture("png", original)), edge, scale);
    VERIFY_ANSWERS(f, 1);
    QVERIFY(f.answers.last());
    QTEST(f.answers.last()->size(), "pixels");
    QTEST(f.answers.points.last(), "points");
    QCOMPARE(f.answers.last()->devicePixelRatio(), 1.0);
}

void LinuxThumbnailGeneratorTest::the_points_are_those_of_the_picture_as_it_is_stored()
{
    Fixture f;
    f.request(f.samples.file("caf\xe9.jpg", SampleFiles::turnedJpeg({70, 40}, 6)));
    VERIFY_ANSWERS(f, 1);
    // The picture is rotated, and the size in points is not.
    QCOMPARE(f.answers.points.last(), QSizeF(72, 41));
    QVERIFY(f.answers.last()->height() > f.answers.last()->width());
}

void LinuxThumbnailGeneratorTest::a_completion_is_called_later()
{
    Fixture f;
    f.request(f.samples.file("a.png", SampleFiles::picture("png", {80, 40})));
    QCOMPARE(f.answers.count(), 0);
    VERIFY_ANSWERS(f, 1);
}

void LinuxThumbnailGeneratorTest::who_waits_longer_than_a_blink_is_told()
{
    Fixture f;
    int delayed = 0;
    const QByteArray path = f.samples.file("a.png", SampleFiles::picture("png", {80, 40}));
    f.generator.generate(SampleFiles::url(path), 72, 1, f.answers.next(), [&delayed] { ++delayed; });
    // Answers are read only while the main loop runs.
    f.queue.advance(LinuxThumbnailGenerator::kBlink - 0.01);
    QCOMPARE(delayed, 0);
    f.queue.advance(0.01);
    QCOMPARE(delayed, 1);
    VERIFY_ANSWERS(f, 1);
    f.generator.generate(SampleFiles::url(path), 72, 1, f.answers.next(), [&delayed] { ++delayed; });
    VERIFY_ANSWERS(f, 2);
    f.queue.advance(1);
    QCOMPARE(delayed, 1);
}

void LinuxThumbnailGeneratorTest::bad_input_is_answered_with_nothing_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("contents");
    const QByteArray png = SampleFiles::picture("png", {800, 400});
    QTest::newRow("empty png") << QByteArray("a.png") << QByteArray();
    QTest::newRow("truncated png") << QByteArray("a.png") << png.left(png.size() / 2);
    QTest::newRow("60000 x 60000 png") << QByteArray("a.png") << SampleFiles::pngHeader({60'000, 60'000});
    QTest::newRow("20000 x 20000 png") << QByteArray("a.png") << SampleFiles::pngHeader({20'000, 20'000});
    QTest::newRow("text named png") << QByteArray("a.png") << QByteArray("no picture");
    QTest::newRow("text") << QByteArray("a.txt") << QByteArray("no picture");
    QTest::newRow("pdf without a service") << QByteArray("a.pdf") << QByteArray("%PDF-1.4\n");
    QTest::newRow("drawing that is none") << QByteArray("a.svg") << QByteArray("<svg");
    QTest::newRow("no file") << QByteArray() << QByteArray();
    QTest::newRow("fifo") << QByteArray("fifo") << QByteArray();
    QTest::newRow("device") << QByteArray("device") << QByteArray();
    QTest::newRow("folder") << QByteArray("folder") << QByteArray();
    QTest::newRow("dangling link") << QByteArray("link") << QByteArray();
}

void LinuxThumbnailGeneratorTest::bad_input_is_answered_with_nothing()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, contents);
    Fixture f;
    QByteArray path = f.samples.path(name);
    if (name.isEmpty())
        path = f.samples.path("missing.png");
    else if (name == "fifo")
        QCOMPARE(::mkfifo(path.constData(), 0600), 0);
    else if (name == "device")
        path = "/dev/zero";
    else if (name == "folder")
        QCOMPARE(::mkdir(path.constData(), 0700), 0);
    else if (name == "link")
        QCOMPARE(::symlink("/nowhere/at/all.png", path.constData()), 0);
    else
        f.samples.file(name, contents);
    f.request(path);
    VERIFY_ANSWERS(f, 1);
    QVERIFY(!f.answers.last());
    // The generator does not wait for a file that does not change.
    QCOMPARE(f.queue.pendingCount(), 0);
}

void LinuxThumbnailGeneratorTest::names_of_any_bytes_are_served()
{
    Fixture f;
    const QByteArray picture = SampleFiles::picture("jpeg", {800, 400});
    qsizetype count = 0;
    for (const QByteArray &name :
         {QByteArray("a b.jpg"), QByteArray("a\nb'\"%41#?.jpg"), QByteArray("\xf0\x9f\x98\x80"),
          QByteArray("\xd7\xa9\xd7\x9c.jpg"), QByteArray("caf\xe9\xff.jpg")}) {
        f.request(f.samples.file(name, picture));
        ++count;
        VERIFY_ANSWERS(f, count);
        QVERIFY2(f.answers.last(), name.constData());
    }
}

void LinuxThumbnailGeneratorTest::a_drawing_is_rendered()
{
    Fixture f;
    const QByteArray drawing = "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 20 10'>"
                               "<rect width='20' height='10' fill='red'/></svg>";
    f.request(f.samples.file("a.svg", drawing), 72, 2);
    VERIFY_ANSWERS(f, 1);
    QVERIFY(f.answers.last());
    QCOMPARE(f.answers.last()->size(), QSize(144, 72));
    QCOMPARE(f.answers.last()->pixelColor(70, 30), QColor(Qt::red));
}

void LinuxThumbnailGeneratorTest::an_entry_of_the_cache_is_used()
{
    Fixture f;
    const QByteArray path = f.samples.file("a.jpg", SampleFiles::picture("jpeg", {800, 400}));
    QImage entry(128, 64, QImage::Format_RGB32);
    entry.fill(Qt::green);
    QVERIFY(f.cache.store(path, RegularFile::open(path)->state(), entry, *ThumbnailCache::sizeClassFor({128, 128})));
    f.request(path);
    VERIFY_ANSWERS(f, 1);
    QCOMPARE(f.answers.last()->size(), QSize(72, 36));
    QCOMPARE(f.answers.last()->pixelColor(9, 9), QColor(Qt::green));
    // At twice the scale, this entry is too small.
    f.request(path, 72, 2);
    VERIFY_ANSWERS(f, 2);
    QVERIFY(f.answers.last()->pixelColor(9, 9).red() > 240);
}

void LinuxThumbnailGeneratorTest::a_decoded_photo_is_kept_in_the_cache()
{
    Fixture f;
    const QByteArray path = f.samples.file("a.jpg", SampleFiles::picture("jpeg", {1000, 500}));
    const FileState state = RegularFile::open(path)->state();
    f.request(path);
    VERIFY_ANSWERS(f, 1);
    QTRY_VERIFY_WITH_TIMEOUT(f.cache.find(path, state, {72, 72}), kPatience);
    QCOMPARE(f.cache.find(path, state, {72, 72})->size(), QSize(128, 64));
    f.request(path, 72, 2);
    VERIFY_ANSWERS(f, 2);
    QTRY_VERIFY_WITH_TIMEOUT(f.cache.find(path, state, {144, 144}), kPatience);
    QCOMPARE(f.cache.find(path, state, {144, 144})->size(), QSize(256, 128));
}

void LinuxThumbnailGeneratorTest::a_small_picture_is_not_kept()
{
    Fixture f;
    f.request(f.samples.file("a.jpg", SampleFiles::picture("jpeg", {300, 300})));
    VERIFY_ANSWERS(f, 1);
    f.request(f.samples.file("b.jpg", SampleFiles::picture("jpeg", {1000, 500})));
    VERIFY_ANSWERS(f, 2);
    const QDir normal(QFile::decodeName(f.cacheFolder + "/normal"));
    QTRY_COMPARE_WITH_TIMEOUT(normal.entryList({u"*.png"_s}, QDir::Files).size(), 1, kPatience);
}

void LinuxThumbnailGeneratorTest::a_file_just_changed_is_neither_looked_up_nor_kept()
{
    Fixture f;
    const QByteArray path = f.samples.file("a.jpg", SampleFiles::picture("jpeg", {1000, 500}));
    f.changeNow(path);
    const FileState state = RegularFile::open(path)->state();
    QImage entry(128, 64, QImage::Format_RGB32);
    entry.fill(Qt::green);
    QVERIFY(f.cache.store(path, state, entry, *ThumbnailCache::sizeClassFor({128, 128})));
    f.request(path);
    VERIFY_ANSWERS(f, 1);
    QVERIFY(f.answers.last()->pixelColor(9, 9).red() > 240);
    // A second later the same entry is valid, and it is still the old one.
    f.queue.advance(1);
    f.request(path);
    VERIFY_ANSWERS(f, 2);
    QCOMPARE(f.answers.last()->pixelColor(9, 9), QColor(Qt::green));
}

void LinuxThumbnailGeneratorTest::a_broken_file_is_decoded_once_only()
{
    Fixture f;
    const QByteArray png = SampleFiles::picture("png", {800, 400});
    const QByteArray path = f.samples.file("a.png", png.left(png.size() / 2) + QByteArray(png.size() / 2, 'x'));
    f.request(path);
    VERIFY_ANSWERS(f, 1);
    QVERIFY(!f.answers.last());
    QTRY_VERIFY_WITH_TIMEOUT(f.cache.hasFailure(path, RegularFile::open(path)->state()), kPatience);
    // A repaired file with the old date and size still counts as broken, and not with a new date.
    f.samples.file("a.png", png + QByteArray(png.size() / 2 * 2 - png.size(), 'x'));
    f.request(path);
    VERIFY_ANSWERS(f, 2);
    SampleFiles::setModified(path, 1'650'000'000);
    f.request(path);
    VERIFY_ANSWERS(f, 3);
    QVERIFY(f.answers.last());
}

void LinuxThumbnailGeneratorTest::a_file_of_the_cache_itself_is_decoded_but_not_kept()
{
    Fixture f;
    QVERIFY(QDir().mkpath(QFile::decodeName(f.cacheFolder + "/xx-large")));
    f.request(f.samples.file("cache/thumbnails/xx-large/a.png", SampleFiles::picture("png", {1024, 512})));
    VERIFY_ANSWERS(f, 1);
    QVERIFY(f.answers.last());
    QVERIFY(!QFile::exists(QFile::decodeName(f.cacheFolder + "/normal")));
}

void LinuxThumbnailGeneratorTest::a_png_still_being_written_comes_when_its_writer_closes_it()
{
    Fixture f;
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

void LinuxThumbnailGeneratorTest::a_jpeg_still_being_written_is_shown_in_part_and_then_whole()
{
    Fixture f;
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

void LinuxThumbnailGeneratorTest::an_empty_file_named_like_an_image_comes_when_it_is_written()
{
    Fixture f;
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

void LinuxThumbnailGeneratorTest::a_file_still_being_written_comes_when_another_takes_its_place()
{
    Fixture f;
    const QByteArray path = f.samples.file("a.png", "");
    const QByteArray other = f.samples.file("other", SampleFiles::picture("png", {80, 40}));
    f.changeNow(path);
    f.request(path);
    f.waitForWriter(1);
    QCOMPARE(::rename(other.constData(), path.constData()), 0);
    VERIFY_ANSWERS(f, 2);
    QVERIFY(f.answers.last());
}

void LinuxThumbnailGeneratorTest::a_link_to_a_file_still_being_written_comes_when_that_is_closed()
{
    Fixture f;
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

void LinuxThumbnailGeneratorTest::a_file_that_was_finished_before_the_watch_comes_too_data()
{
    QTest::addColumn<bool>("isGranted");
    QTest::newRow("with a watch") << true;
    QTest::newRow("without one") << false;
}

void LinuxThumbnailGeneratorTest::a_file_that_was_finished_before_the_watch_comes_too()
{
    QFETCH(const bool, isGranted);
    Fixture f;
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

void LinuxThumbnailGeneratorTest::a_writer_may_rest_for_a_minute_data()
{
    QTest::addColumn<qint64>("rest");
    QTest::addColumn<bool>("isWaitedFor");
    QTest::newRow("59 s") << qint64(59) << true;
    QTest::newRow("60 s") << qint64(60) << false;
}

void LinuxThumbnailGeneratorTest::a_writer_may_rest_for_a_minute()
{
    QFETCH(const qint64, rest);
    QFETCH(const bool, isWaitedFor);
    Fixture f;
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

void LinuxThumbnailGeneratorTest::a_file_that_goes_while_it_is_waited_for_is_not_answered_again()
{
    Fixture f;
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

void LinuxThumbnailGeneratorTest::a_file_that_is_closed_again_and_again_and_never_whole_is_given_up()
{
    Fixture f;
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

void LinuxThumbnailGeneratorTest::an_empty_file_of_another_kind_is_not_waited_for()
{
    Fixture f;
    const QByteArray path = f.samples.file("a.txt", "");
    f.changeNow(path);
    f.request(path);
    VERIFY_ANSWERS(f, 1);
    QVERIFY(!f.answers.last());
    QCOMPARE(f.queue.pendingCount(), 0);
}

void LinuxThumbnailGeneratorTest::requests_for_the_same_pixels_that_wait_are_served_together()
{
    constexpr int kRequests = 200;
    Fixture f;
    const QByteArray photo = f.samples.file("a.png", SampleFiles::picture("png", {1920, 1080}));
    for (int i = 0; i < kRequests; ++i)
        f.request(photo, 72 + i % 10 * 0.09, 1);
    VERIFY_ANSWERS(f, kRequests);
    QCOMPARE(f.answers.sizes().count(f.answers.last()->size()), qsizetype(kRequests));
    // Only the first requests were begun, at most as many as there are threads.
    QVERIFY2(f.answers.different() < kRequests / 2, qPrintable(QString::number(f.answers.different())));
}

void LinuxThumbnailGeneratorTest::requests_for_other_pixels_are_served_apart()
{
    Fixture f;
    const QByteArray first = f.samples.file("a.png", SampleFiles::picture("png", {1600, 1600}));
    const QByteArray second = f.samples.file("b.png", SampleFiles::picture("png", {1600, 800}));
    for (int i = 0; i < 10; ++i) {
        f.request(first, 72);
        f.request(first, 73);
        f.request(second, 72);
    }
    VERIFY_ANSWERS(f, 30);
    for (const QSize &size : {QSize(72, 72), QSize(73, 73), QSize(72, 36)})
        QCOMPARE(f.answers.sizes().count(size), qsizetype(10));
}

void LinuxThumbnailGeneratorTest::every_completion_is_called_once_when_the_generator_goes()
{
    const SampleFiles samples;
    VirtualMainQueue queue;
    Answers answers;
    const QByteArray photo = samples.file("a.jpg", SampleFiles::picture("jpeg", {3000, 2000}));
    const QByteArray growing = samples.file("b.png", "");
    SampleFiles::setModified(growing, queue.currentDate().toSecsSinceEpoch());
    {
        LinuxThumbnailGenerator generator(queue, std::make_shared<FileHelpers>(queue), samples.path("cache"));
        // One request waits for its writer, one is about to, and the rest wait for their turn.
        generator.generate(SampleFiles::url(growing), 72, 1, answers.next());
        QTRY_COMPARE_WITH_TIMEOUT(queue.pendingCount(), 1, kPatience);
        queue.runPending();
        generator.generate(SampleFiles::url(growing), 72, 1, answers.next());
        QTRY_COMPARE_WITH_TIMEOUT(queue.pendingCount(), 1, kPatience);
        for (int i = 0; i < 48; ++i)
            generator.generate(SampleFiles::url(photo), 72, 1, answers.next());
    }
    QCOMPARE(answers.count(), 50);
    queue.advance(60);
    QCOMPARE(answers.count(), 50);
}

PARKLET_TEST(LinuxThumbnailGeneratorTest)
#include "LinuxThumbnailGeneratorTest.moc"
