// SPDX-License-Identifier: MIT
#include "tests/platform/thumbnails/DiskCache.h"
#include "tests/support/SampleFiles.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

class ThumbnailCacheTest : public QObject {
    Q_OBJECT

private slots:
    void a_uri_is_written_as_the_desktops_programs_write_it_data();
    void a_uri_is_written_as_the_desktops_programs_write_it();
    void the_smallest_class_that_is_large_enough_is_taken_data();
    void the_smallest_class_that_is_large_enough_is_taken();
    void a_stored_entry_is_found_again();
    void an_entry_has_its_name_its_keys_and_is_private();
    void an_entry_of_another_state_of_the_file_does_not_count();
    void an_entry_of_another_program_counts();
    void an_entry_with_microseconds_counts_for_that_very_moment_data();
    void an_entry_with_microseconds_counts_for_that_very_moment();
    void an_entry_of_another_file_does_not_count();
    void a_larger_entry_serves_and_a_smaller_one_does_not();
    void an_entry_larger_than_its_class_does_not_count();
    void what_is_no_png_does_not_count();
    void storing_again_replaces_the_entry_and_leaves_nothing_else();
    void the_caches_own_files_have_no_entries();
    void a_folder_that_cannot_be_made_is_a_failure();
    void a_failure_counts_for_that_state_of_the_file_only();
    void failures_of_other_programs_do_not_count();

private:
    // The path of the entry for `path` in one class.
    QByteArray entry(const QByteArray &sizeClass, const QByteArray &path) const
    {
        const QByteArray hash = QCryptographicHash::hash(ThumbnailCache::uri(path), QCryptographicHash::Md5).toHex();
        return folder + '/' + sizeClass + '/' + hash + ".png";
    }

    const SampleFiles samples;
    const QByteArray folder = samples.path("cache/thumbnails");
    const DiskCache cache{folder};
    const FileState state{1234, 1'600'000'000, 5};
    const CacheClass normal = *ThumbnailCache::sizeClassFor({128, 128});
    const CacheClass large = *ThumbnailCache::sizeClassFor({256, 256});
};

namespace {

QImage plain(const QSize &size, const QColor &color = Qt::red)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

mode_t modeOf(const QByteArray &path)
{
    struct stat info;
    return ::stat(path.constData(), &info) == 0 ? info.st_mode & 0777 : 0;
}

} // namespace

void ThumbnailCacheTest::a_uri_is_written_as_the_desktops_programs_write_it_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArray>("uri");
    QTest::newRow("plain") << QByteArray("/home/a/b.png") << QByteArray("file:///home/a/b.png");
    QTest::newRow("space and percent") << QByteArray("/a b%.png") << QByteArray("file:///a%20b%25.png");
    QTest::newRow("what others escape") << QByteArray("/a;b[c].png") << QByteArray("file:///a%3Bb%5Bc%5D.png");
    QTest::newRow("what is left alone") << QByteArray("/-._~!$&'()*+,:=@") << QByteArray("file:///-._~!$&'()*+,:=@");
    QTest::newRow("controls and quotes") << QByteArray("/\n\"#?<>^`{|}\\")
                                         << QByteArray("file:///%0A%22%23%3F%3C%3E%5E%60%7B%7C%7D%5C");
    QTest::newRow("utf8") << QByteArray("/\xc3\xa9") << QByteArray("file:///%C3%A9");
    QTest::newRow("no utf8") << QByteArray("/caf\xe9") << QByteArray("file:///caf%E9");
}

void ThumbnailCacheTest::a_uri_is_written_as_the_desktops_programs_write_it()
{
    QFETCH(QByteArray, path);
    QTEST(ThumbnailCache::uri(path), "uri");
}

void ThumbnailCacheTest::the_smallest_class_that_is_large_enough_is_taken_data()
{
    QTest::addColumn<QSize>("bound");
    QTest::addColumn<int>("pixels");
    QTest::newRow("small") << QSize(72, 41) << 128;
    QTest::newRow("exact") << QSize(128, 128) << 128;
    QTest::newRow("twice the default size") << QSize(144, 82) << 256;
    QTest::newRow("portrait") << QSize(82, 257) << 512;
    QTest::newRow("large") << QSize(1024, 600) << 1024;
    QTest::newRow("too large") << QSize(1025, 1) << 0;
}

void ThumbnailCacheTest::the_smallest_class_that_is_large_enough_is_taken()
{
    QFETCH(QSize, bound);
    const auto sizeClass = ThumbnailCache::sizeClassFor(bound);
    QTEST(sizeClass ? sizeClass->pixels : 0, "pixels");
}

void ThumbnailCacheTest::a_stored_entry_is_found_again()
{
    const QByteArray path = "/pictures/[caf\xe9] 1.jpg";
    QVERIFY(!cache.find(path, state, {72, 72}));
    QVERIFY(cache.store(path, state, plain({128, 64}), normal));
    const auto image = cache.find(path, state, {72, 72});
    QVERIFY(image);
    QCOMPARE(image->size(), QSize(128, 64));
    QCOMPARE(image->pixelColor(64, 32), QColor(Qt::red));
}

void ThumbnailCacheTest::an_entry_has_its_name_its_keys_and_is_private()
{
    const QByteArray path = "/pictures/with a name that is longer than any short text.jpg";
    QVERIFY(cache.store(path, state, plain({128, 64}), normal));
    QFile file(QFile::decodeName(entry("normal", path)));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    for (const QByteArray &text : {"Thumb::URI" + QByteArray(1, '\0') + ThumbnailCache::uri(path),
                                   QByteArray("Thumb::MTime\0"
                                              "1600000000",
                                              23),
                                   QByteArray("Thumb::Size\0"
                                              "1234",
                                              16),
                                   QByteArray("Software\0Parklet", 16)}) {
        const auto at = bytes.indexOf("tEXt" + text);
        QVERIFY2(at > 0 && at < bytes.indexOf("IDAT"), text.constData());
    }
    // The image readers verify the checksums of the chunks.
    QCOMPARE(QImage::fromData(bytes).text(u"Software"_s), u"Parklet"_s);
    QCOMPARE(modeOf(entry("normal", path)), mode_t(0600));
    for (const QByteArray &made : {folder + "/normal", folder, samples.path("cache")})
        QCOMPARE(modeOf(made), mode_t(0700));
}

void ThumbnailCacheTest::an_entry_of_another_state_of_the_file_does_not_count()
{
    const QByteArray path = "/states.jpg";
    QVERIFY(cache.store(path, state, plain({128, 64}), normal));
    QVERIFY(cache.find(path, {1234, 1'600'000'000, 0}, {72, 72})); // only whole seconds count
    QVERIFY(!cache.find(path, {1234, 1'600'000'001, 5}, {72, 72}));
    QVERIFY(!cache.find(path, {1234, 1'599'999'999, 5}, {72, 72}));
    QVERIFY(!cache.find(path, {1235, 1'600'000'000, 5}, {72, 72}));
}

void ThumbnailCacheTest::an_entry_of_another_program_counts()
{
    // This entry has no size, and a long URI that is stored compressed.
    const QByteArray path = "/others/with a name that is longer than any short text, so that it is compressed.jpg";
    QVERIFY(QDir().mkpath(QFile::decodeName(folder + "/normal")));
    QImage theirs = plain({128, 64}, Qt::green);
    theirs.setText(u"Thumb::URI"_s, QString::fromLatin1(ThumbnailCache::uri(path)));
    theirs.setText(u"Thumb::MTime"_s, u"1600000000"_s);
    QVERIFY(theirs.save(QFile::decodeName(entry("normal", path)), "png"));
    const auto image = cache.find(path, state, {72, 72});
    QVERIFY(image);
    QCOMPARE(image->pixelColor(5, 5), QColor(Qt::green));
}

void ThumbnailCacheTest::an_entry_with_microseconds_counts_for_that_very_moment_data()
{
    QTest::addColumn<QString>("time");
    QTest::addColumn<bool>("counts");
    QTest::newRow("same") << u"1600000000.219761"_s << true;
    QTest::newRow("rounded up") << u"1600000000.219762"_s << true;
    QTest::newRow("with a comma") << u"1600000000,219761"_s << true;
    QTest::newRow("whole seconds") << u"1600000000"_s << true;
    QTest::newRow("earlier in that second") << u"1600000000.219700"_s << false;
    QTest::newRow("another second") << u"1600000001.219761"_s << false;
    QTest::newRow("none") << QString() << false;
    QTest::newRow("no time") << u"today"_s << false;
}

void ThumbnailCacheTest::an_entry_with_microseconds_counts_for_that_very_moment()
{
    QFETCH(QString, time);
    const QByteArray path = "/moments.pdf";
    QVERIFY(QDir().mkpath(QFile::decodeName(folder + "/normal")));
    QImage theirs = plain({128, 64});
    theirs.setText(u"Thumb::URI"_s, QString::fromLatin1(ThumbnailCache::uri(path)));
    theirs.setText(u"Thumb::MTime"_s, time);
    QVERIFY(theirs.save(QFile::decodeName(entry("normal", path)), "png"));
    QTEST(cache.find(path, {1234, 1'600'000'000, 219'761'499}, {72, 72}).has_value(), "counts");
}

void ThumbnailCacheTest::an_entry_of_another_file_does_not_count()
{
    QVERIFY(cache.store("/one.jpg", state, plain({128, 64}), normal));
    QVERIFY(
        QFile::copy(QFile::decodeName(entry("normal", "/one.jpg")), QFile::decodeName(entry("normal", "/two.jpg"))));
    QVERIFY(!cache.find("/two.jpg", state, {72, 72}));
}

void ThumbnailCacheTest::a_larger_entry_serves_and_a_smaller_one_does_not()
{
    QVERIFY(cache.store("/small.jpg", state, plain({128, 64}), normal));
    QVERIFY(!cache.find("/small.jpg", state, {144, 144}));
    QVERIFY(cache.store("/large.jpg", state, plain({256, 128}), large));
    QCOMPARE(cache.find("/large.jpg", state, {72, 72})->size(), QSize(256, 128));
    QVERIFY(cache.store("/large.jpg", state, plain({128, 64}), normal));
    QCOMPARE(cache.find("/large.jpg", state, {72, 72})->size(), QSize(128, 64));
    QCOMPARE(cache.find("/large.jpg", state, {144, 144})->size(), QSize(256, 128));
}

void ThumbnailCacheTest::an_entry_larger_than_its_class_does_not_count()
{
    QVERIFY(cache.store("/huge.jpg", state, plain({129, 64}), normal));
    QVERIFY(!cache.find("/huge.jpg", state, {72, 72}));
}

void ThumbnailCacheTest::what_is_no_png_does_not_count()
{
    QVERIFY(cache.store("/broken.jpg", state, plain({128, 64}), normal));
    const QByteArray path = entry("normal", "/broken.jpg");
    QFile file(QFile::decodeName(path));
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(SampleFiles::picture("jpeg", {128, 64}));
    file.close();
    QVERIFY(!cache.find("/broken.jpg", state, {72, 72}));
    QVERIFY(file.remove());
    QCOMPARE(::mkfifo(path.constData(), 0600), 0);
    QVERIFY(!cache.find("/broken.jpg", state, {72, 72}));
}

void ThumbnailCacheTest::storing_again_replaces_the_entry_and_leaves_nothing_else()
{
    const SampleFiles fresh;
    const DiskCache other(fresh.path("thumbnails"));
    QVERIFY(other.store("/again.jpg", state, plain({128, 64}, Qt::red), normal));
    QVERIFY(other.store("/again.jpg", {99, 1'700'000'000, 0}, plain({128, 64}, Qt::blue), normal));
    QVERIFY(!other.find("/again.jpg", state, {72, 72}));
    QCOMPARE(other.find("/again.jpg", {99, 1'700'000'000, 0}, {72, 72})->pixelColor(0, 0), QColor(Qt::blue));
    QCOMPARE(QDir(QFile::decodeName(fresh.path("thumbnails/normal"))).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

void ThumbnailCacheTest::the_caches_own_files_have_no_entries()
{
    const QByteArray inside = folder + "/normal/0123456789abcdef0123456789abcdef.png";
    QVERIFY(!cache.covers(inside));
    QVERIFY(!cache.store(inside, state, plain({128, 64}), normal));
    QVERIFY(!cache.storeFailure(inside, state));
    QVERIFY(!QFile::exists(QFile::decodeName(entry("normal", inside))));
    QVERIFY(cache.covers(folder + "-of-mine/a.png"));
    QVERIFY(!cache.covers("no/absolute/path.png"));
}

void ThumbnailCacheTest::a_folder_that_cannot_be_made_is_a_failure()
{
    const DiskCache nowhere(samples.file("a-file", "") + "/thumbnails");
    QVERIFY(!nowhere.store("/a.jpg", state, plain({128, 64}), normal));
    QVERIFY(!nowhere.find("/a.jpg", state, {72, 72}));
}

void ThumbnailCacheTest::a_failure_counts_for_that_state_of_the_file_only()
{
    QVERIFY(!cache.hasFailure("/bad.jpg", state));
    QVERIFY(cache.storeFailure("/bad.jpg", state));
    QVERIFY(cache.hasFailure("/bad.jpg", state));
    QVERIFY(!cache.hasFailure("/bad.jpg", {1234, 1'600'000'001, 5}));
    QVERIFY(!cache.hasFailure("/good.jpg", state));
    QVERIFY(!cache.find("/bad.jpg", state, {1, 1}));
}

void ThumbnailCacheTest::failures_of_other_programs_do_not_count()
{
    QVERIFY(cache.storeFailure("/theirs.jpg", state));
    const QDir fail(QFile::decodeName(folder + "/fail"));
    const QStringList folders = fail.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    QCOMPARE(folders.size(), 1);
    QVERIFY(folders.first().startsWith(QLatin1String("parklet-")));
    QVERIFY(QDir(fail).rename(folders.first(), u"another-1.0"_s));
    QVERIFY(!cache.hasFailure("/theirs.jpg", state));
}

PARKLET_TEST(ThumbnailCacheTest)
#include "ThumbnailCacheTest.moc"
