// SPDX-License-Identifier: MIT
#include "platform/common/OpenThumbnails.h"
#include "tests/support/TestProgram.h"

#include <QTest>

#include <atomic>
#include <thread>
#include <vector>

class OpenThumbnailsTest : public QObject {
    Q_OBJECT

private slots:
    void a_request_is_answered_once_with_its_own_picture();
    void what_is_open_at_the_end_is_answered_with_nothing();
    void an_answer_may_ask_for_the_next_picture();
    void threads_that_answer_the_same_request_answer_it_once();
};

namespace {

Thumbnail picture(int width)
{
    return {QImage(width, 1, QImage::Format_RGB32), QSizeF(width, 1)};
}

} // namespace

void OpenThumbnailsTest::a_request_is_answered_once_with_its_own_picture()
{
    OpenThumbnails open;
    QList<int> widths;
    const auto note = [&widths](const std::optional<Thumbnail> &image) { widths.append(image->image.width()); };
    const quint64 first = open.add(note);
    const quint64 second = open.add(note);
    QVERIFY(open.isOpen(first));
    open.answer(second, picture(2));
    open.answer(second, picture(3));
    QVERIFY(open.isOpen(first));
    QVERIFY(!open.isOpen(second));
    open.answer(first, picture(1));
    open.answerAll();
    QCOMPARE(widths, (QList<int>{2, 1}));
}

void OpenThumbnailsTest::what_is_open_at_the_end_is_answered_with_nothing()
{
    OpenThumbnails open;
    int empty = 0;
    for (int i = 0; i < 3; ++i)
        open.add([&empty](const std::optional<Thumbnail> &image) { empty += image ? 0 : 1; });
    open.answerAll();
    open.answerAll();
    QCOMPARE(empty, 3);
}

void OpenThumbnailsTest::an_answer_may_ask_for_the_next_picture()
{
    OpenThumbnails open;
    quint64 next = 0;
    const quint64 first =
        open.add([&](const std::optional<Thumbnail> &) { next = open.add([](const std::optional<Thumbnail> &) {}); });
    open.answer(first, {});
    QVERIFY(open.isOpen(next));
}

void OpenThumbnailsTest::threads_that_answer_the_same_request_answer_it_once()
{
    constexpr int kRequests = 1'000;
    OpenThumbnails open;
    std::atomic<int> answers = 0;
    std::vector<quint64> requests;
    for (int i = 0; i < kRequests; ++i)
        requests.push_back(open.add([&answers](const std::optional<Thumbnail> &) { ++answers; }));
    const auto answerEach = [&] {
        for (const quint64 request : requests)
            open.answer(request, {});
    };
    std::thread other(answerEach);
    answerEach();
    other.join();
    QCOMPARE(answers.load(), kRequests);
}

PARKLET_TEST(OpenThumbnailsTest)

#include "OpenThumbnailsTest.moc"
