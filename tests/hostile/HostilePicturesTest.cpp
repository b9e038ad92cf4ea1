// SPDX-License-Identifier: MIT
#include "tests/hostile/HelperFixture.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QBuffer>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>

#include <random>

// Pictures that are made to crash the program that opens them.
class HostilePicturesTest : public QObject {
    Q_OBJECT

private slots:
    void four_gigabytes_cost_no_helper_its_memory_data();
    void four_gigabytes_cost_no_helper_its_memory();
    void a_drawing_without_an_end_is_given_up_data();
    void a_drawing_without_an_end_is_given_up();
    void an_entry_of_the_cache_is_a_picture_too();
    void a_picture_of_any_size_leaves_a_helper_below_its_bound_data();
    void a_picture_of_any_size_leaves_a_helper_below_its_bound();
    void mutated_pictures_are_all_answered();
};

namespace {

constexpr qint64 kMostMemory = 96 << 20; // bytes; of a helper
constexpr auto kCountVariable = "PARKLET_MUTATIONS";

const QByteArray kGif("GIF89a\1\0\1\0\x80\0\0\0\0\0\xff\xff\xff,\0\0\0\0\1\0\1\0\0\2\2D\1\0;", 35);

QByteArray drawing(const QByteArray &content)
{
    return "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 100 100'>" + content + "</svg>";
}

QByteArray repeated(int count, const std::function<QByteArray(int)> &part)
{
    QByteArray all;
    for (int i = 0; i < count; ++i)
        all += part(i);
    return all;
}

// Whether no helper has come near its memory limit. Always true in a build without the limit.
bool staysBelowBound(const HelperFixture &f)
{
#ifdef __SANITIZE_ADDRESS__
    return !f.generator.processes().empty();
#else
    for (const pid_t process : f.generator.processes()) {
        if (HelperFixture::memoryPeak(process) >= kMostMemory)
            return false;
    }
    return true;
#endif
}

QByteArray picture(const char *format, const QSize &size, QImage::Format pixels = QImage::Format_RGB32)
{
    QImage image(size, pixels);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, qRgb(x * 7, y * 11, x ^ y));
    }
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return buffer.data();
}

} // namespace

void HostilePicturesTest::four_gigabytes_cost_no_helper_its_memory_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("contents");
    QTest::newRow("webp") << QByteArray("a.webp") << SampleFiles::picture("webp", {16, 16});
    QTest::newRow("gif") << QByteArray("a.gif") << kGif;
    QTest::newRow("jpeg") << QByteArray("a.jpg") << SampleFiles::picture("jpeg", {16, 16});
    QTest::newRow("png") << QByteArray("a.png") << SampleFiles::picture("png", {16, 16});
    QTest::newRow("bmp") << QByteArray("a.bmp") << SampleFiles::picture("bmp", {16, 16});
    QTest::newRow("tiff") << QByteArray("a.tiff") << picture("tiff", {16, 16});
}

void HostilePicturesTest::four_gigabytes_cost_no_helper_its_memory()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, contents);
    HelperFixture f;
    const QByteArray path = f.samples.file(name, contents);
    QVERIFY(QFile::resize(QFile::decodeName(path), qint64(4) << 30));
    SampleFiles::setModified(path, 1'600'000'000);
    QElapsedTimer time;
    time.start();
    QVERIFY(f.hasPicture(f.request(path)));
    QVERIFY(staysBelowBound(f));
    // Reading the whole files would take longer on any machine.
    QVERIFY2(time.elapsed() < 60'000, QByteArray::number(time.elapsed()).constData());
}

void HostilePicturesTest::a_drawing_without_an_end_is_given_up_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::newRow("60,000 rules") << drawing(
        "<style>" + repeated(60'000, [](int i) { return ".a" + QByteArray::number(i) + " b{fill:red}"; }) + "</style>" +
        repeated(2'000, [](int i) { return "<rect class='a" + QByteArray::number(i) + "' width='1' height='1'/>"; }));
    QTest::newRow("400,000 attributes") << drawing(
        "<rect width='1' height='1' " + repeated(400'000, [](int i) { return 'a' + QByteArray::number(i) + "='1' "; }) +
        "/>");
    QTest::newRow("a path of 500,000 pieces") << drawing(
        "<path stroke='red' stroke-width='9' stroke-dasharray='0.001' d='M0 0" +
        repeated(500'000, [](int i) { return "L" + QByteArray::number(i % 97) + ' ' + QByteArray::number(i % 89); }) +
        "'/>");
    QTest::newRow("a textarea") << drawing("<textArea width='9' height='9'>" +
                                           repeated(200'000, [](int) { return QByteArray("word "); }) + "</textArea>");
}

void HostilePicturesTest::a_drawing_without_an_end_is_given_up()
{
    QFETCH(QByteArray, contents);
    HelperFixture f;
    // There are more drawings than helpers for drawings.
    std::vector<size_t> drawings;
    for (int i = 0; i < 3; ++i)
        drawings.push_back(f.request(f.samples.file("a" + QByteArray::number(i) + ".svg", contents)));
    // A photo does not wait for the drawings, and no time needs to pass.
    QVERIFY(f.hasPicture(f.request(f.samples.file("b.jpg", SampleFiles::picture("jpeg", {800, 400})))));
    for (const size_t place : drawings)
        QVERIFY(f.secondsUntil(place, 6'000) >= 0);
    QVERIFY(f.hasPicture(f.request(f.samples.file("c.svg", drawing("<rect width='9' height='9'/>")))));
    QVERIFY(staysBelowBound(f));
}

void HostilePicturesTest::an_entry_of_the_cache_is_a_picture_too()
{
    HelperFixture f;
    const QByteArray path = f.samples.file("a.jpg", SampleFiles::picture("jpeg", {800, 400}));
    const ThumbnailCache cache(f.samples.path("cache/thumbnails"));
    const QByteArray entry = cache.entryPath("normal", path);
    QVERIFY(QDir().mkpath(QFile::decodeName(entry.left(entry.lastIndexOf('/')))));
    for (const QByteArray &contents :
         {SampleFiles::pngHeader({100, 100}), SampleFiles::pngHeader({60'000, 60'000}), QByteArray("\x89PNG\r\n\x1a\n"),
          SampleFiles::picture("png", {128, 64}).left(200), QByteArray(1'000, '\xff')}) {
        QFile file(QFile::decodeName(entry));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(contents);
        file.close();
        QVERIFY(f.hasPicture(f.request(path)));
    }
    QVERIFY(QFile::resize(QFile::decodeName(entry), qint64(4) << 30));
    QVERIFY(f.hasPicture(f.request(path)));
    QVERIFY(staysBelowBound(f));
}

void HostilePicturesTest::a_picture_of_any_size_leaves_a_helper_below_its_bound_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::newRow("16-megapixel webp") << picture("webp", {4'000, 4'000});
    QTest::newRow("16-megapixel bmp") << picture("bmp", {4'000, 4'000});
    QTest::newRow("16-megapixel tiff") << picture("tiff", {4'000, 4'000});
    QTest::newRow("24-megapixel tiff") << picture("tiff", {6'000, 4'000});
    QTest::newRow("16-megapixel tiff of 16 bits") << picture("tiff", {4'000, 4'000}, QImage::Format_RGBA64);
    QTest::newRow("24-megapixel png") << picture("png", {6'000, 4'000});
    QTest::newRow("20-megapixel progressive jpeg") << SampleFiles::progressiveJpeg({5'000, 4'000});
    QTest::newRow("24-megapixel progressive jpeg") << SampleFiles::progressiveJpeg({6'000, 4'000});
    QTest::newRow("40-megapixel jpeg") << picture("jpeg", {8'000, 5'000});
}

void HostilePicturesTest::a_picture_of_any_size_leaves_a_helper_below_its_bound()
{
    QFETCH(QByteArray, contents);
    HelperFixture f;
    const size_t place = f.request(f.samples.file("a", contents));
    QVERIFY(f.waitFor(place));
    qInfo("%s, %lld MB", f.answers[place].image.isNull() ? "no picture" : "a picture",
          f.generator.processes().empty() ? 0LL : HelperFixture::memoryPeak(f.generator.processes().front()) >> 20);
    QVERIFY(staysBelowBound(f));
    // The next picture is made, whatever the result of this one was.
    QVERIFY(f.hasPicture(f.request(f.samples.file("b.jpg", SampleFiles::picture("jpeg", {800, 400})))));
}

void HostilePicturesTest::mutated_pictures_are_all_answered()
{
    constexpr int kFew = 600;
    const int count =
        qEnvironmentVariableIntValue(kCountVariable) > 0 ? qEnvironmentVariableIntValue(kCountVariable) : kFew;
    const QList<std::pair<QByteArray, QByteArray>> seeds = {
        {"png", picture("png", {120, 80})},
        {"jpg", picture("jpeg", {120, 80})},
        {"jpg", SampleFiles::progressiveJpeg({120, 80})},
        {"jpg", SampleFiles::turnedJpeg({120, 80}, 6)},
        {"gif", kGif},
        {"bmp", picture("bmp", {60, 40})},
        {"webp", picture("webp", {120, 80})},
        {"tiff", picture("tiff", {60, 40})},
        {"ico", picture("ico", {32, 32})},
        {"svg", drawing("<defs><g id='a'><path d='M0 0L9 9Z'/></g></defs><use href='#a'/><text y='9'>a</text>"
                        "<style>.b{fill:red}</style><rect class='b' width='9' height='9' opacity='.5'/>")},
    };
    // The seed is fixed, so each run has the same pictures.
    std::mt19937 random(20'261'122);
    const auto number = [&random](size_t below) {
        return static_cast<qsizetype>(random() % std::max<size_t>(below, 1));
    };
    HelperFixture f;
    const size_t inFlight = 40;
    std::deque<std::pair<size_t, QByteArray>> open;
    int pictures = 0;
    qint64 peak = 0;
    const auto finishOne = [&] {
        const auto [place, path] = open.front();
        open.pop_front();
        QVERIFY(f.waitFor(place) || f.secondsUntil(place, 600) >= 0);
        pictures += f.answers[place].image.isNull() ? 0 : 1;
        QVERIFY(QFile::remove(QFile::decodeName(path)));
        for (const pid_t process : f.generator.processes())
            peak = std::max(peak, HelperFixture::memoryPeak(process));
    };
    for (int i = 0; i < count; ++i) {
        const auto &[suffix, seed] = seeds.at(i % seeds.size());
        QByteArray bytes = seed;
        for (qsizetype change = number(8) + 1; change > 0 && !bytes.isEmpty(); --change) {
            const qsizetype at = number(static_cast<size_t>(bytes.size()));
            switch (number(5)) {
            case 0:
                bytes[at] = static_cast<char>(number(256));
                break;
            case 1:
                bytes[at] = static_cast<char>(bytes.at(at) ^ (1 << number(8)));
                break;
            case 2:
                bytes.insert(at, bytes.mid(number(static_cast<size_t>(bytes.size())), number(64)));
                break;
            case 3:
                bytes.remove(at, number(32));
                break;
            default:
                bytes.replace(at, std::min<qsizetype>(4, bytes.size() - at),
                              QByteArray(4, number(2) == 0 ? '\xff' : '\0'));
            }
        }
        const QByteArray path = f.samples.file(QByteArray::number(i) + '.' + suffix, bytes);
        open.emplace_back(f.request(path), path);
        while (open.size() >= inFlight)
            finishOne();
    }
    while (!open.empty())
        finishOne();
    qInfo("%d mutated pictures: %d still were pictures, a helper took %lld MB at most", count, pictures, peak >> 20);
    QVERIFY(pictures > 0);
    QVERIFY(pictures < count);
#ifndef __SANITIZE_ADDRESS__
    QVERIFY(peak < kMostMemory);
#endif
}

PARKLET_TEST(HostilePicturesTest)
#include "HostilePicturesTest.moc"
