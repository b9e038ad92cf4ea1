// SPDX-License-Identifier: MIT
#include "platform/linux/helpers/PictureHelpers.h"
#include "tests/hostile/HelperFixture.h"
#include "tests/support/BuiltHelpers.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QDir>

#include <ctime>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

// Helpers that are killed, stopped or blocked by a file system.
class HelpersTest : public QObject {
    Q_OBJECT

private slots:
    void a_helper_that_is_killed_idle_is_replaced();
    void a_helper_that_is_killed_at_a_picture_leaves_it_without_and_the_next_one_comes();
    void a_helper_that_stands_still_is_given_up_after_its_time();
    void a_helper_that_gets_little_of_a_processor_is_waited_for();
    void a_picture_may_be_computed_for_ten_seconds();
    void a_helper_that_hardly_gets_on_is_given_up_in_the_end();
    void a_drawing_may_be_computed_for_five_seconds();
    void what_a_process_has_computed_is_counted();
    void a_picture_that_two_helpers_fell_over_is_not_given_to_a_third();
    void such_a_picture_is_tried_again_when_it_has_changed();
    void helpers_end_when_they_have_been_idle();
    void helpers_end_with_the_shelf();
    void a_folder_that_does_not_answer_keeps_no_other_one();
    void an_icon_comes_by_name_while_a_folder_does_not_answer();
    void folders_that_do_not_answer_are_given_up_when_there_are_too_many();
    void a_helper_holds_none_of_the_shelfs_descriptors();
    void every_helper_is_confined();
    void without_helper_programs_there_are_no_pictures_and_no_waiting();
};

namespace {

QByteArray photo()
{
    return SampleFiles::picture("jpeg", {300, 200}); // too small for the cache
}

// Waits until the helper has read its messages, and stops it.
void stop(pid_t process)
{
    QCOMPARE(::kill(process, SIGSTOP), 0);
    QTRY_VERIFY_WITH_TIMEOUT(
        [process] {
            QFile stat(u"/proc/%1/stat"_s.arg(process));
            return stat.open(QIODevice::ReadOnly) && stat.readAll().contains(") T ");
        }(),
        HelperFixture::kPatience);
}

bool isThere(pid_t process)
{
    return ::kill(process, 0) == 0;
}

} // namespace

void HelpersTest::a_helper_that_is_killed_idle_is_replaced()
{
    HelperFixture f;
    QVERIFY(f.hasPicture(f.request(f.samples.file("a.jpg", photo()))));
    const auto before = f.generator.processes();
    for (const pid_t process : before)
        ::kill(process, SIGKILL);
    for (const pid_t process : f.files->processes())
        ::kill(process, SIGKILL);
    QTRY_VERIFY_WITH_TIMEOUT(f.generator.processes().empty() && f.files->processes().empty(), HelperFixture::kPatience);
    QVERIFY(f.hasPicture(f.request(f.samples.file("b.jpg", photo()))));
    QVERIFY(f.generator.processes() != before);
}

void HelpersTest::a_helper_that_is_killed_at_a_picture_leaves_it_without_and_the_next_one_comes()
{
    HelperFixture f;
    QVERIFY(f.hasPicture(f.request(f.samples.file("a.jpg", photo()))));
    const pid_t process = f.generator.processes().front();
    stop(process);
    const size_t lost = f.request(f.samples.file("b.jpg", photo()));
    // The first picture has been sent when a second one needs another helper.
    const size_t other = f.request(f.samples.file("c.jpg", photo()));
    QVERIFY(f.hasPicture(other));
    ::kill(process, SIGKILL);
    // The helper had not begun with it, so the file is not to blame.
    QVERIFY(f.hasPicture(lost));
}

namespace {

// The helpers of pictures alone, whose processor time the test sets.
struct PicturesFixture {
    struct Request {
        bool isBegun = false;
        std::optional<PictureAnswer> answer;
    };

    Request &request(const QByteArray &path, PictureTask task = PictureTask::Whole)
    {
        Request &one = requests.emplace_back();
        PictureRequest wanted;
        wanted.task = task;
        wanted.path = path;
        wanted.edge = 72;
        pictures.request(
            wanted, [&one](const PictureAnswer &answer) { one.answer = answer; }, [&one] { one.isBegun = true; });
        return one;
    }

    // A request whose helper has received it and is stopped.
    Request &standing()
    {
        Request &first = request(samples.file("first.jpg", photo()));
        if (!QTest::qWaitFor([&first] { return first.answer.has_value(); }, HelperFixture::kPatience))
            QTest::qFail("There is no helper", __FILE__, __LINE__);
        process = pictures.processes().front();
        stop(process);
        Request &one = request(samples.file("second.jpg", photo()));
        // Files are opened one after the other.
        bool isOpened = false;
        files.look(samples.path("second.jpg"), 0, [&isOpened](FileKind, const QByteArray &) { isOpened = true; });
        if (!QTest::qWaitFor([&isOpened] { return isOpened; }, HelperFixture::kPatience))
            QTest::qFail("The file has not been opened", __FILE__, __LINE__);
        return one;
    }

    // Whether the helper still makes pictures.
    bool isKept() const { return std::ranges::count(pictures.processes(), process) == 1; }

    // Advances the time by `seconds`, of which the helpers compute `part`.
    void advance(double seconds, double part)
    {
        for (double end = queue.now() + seconds; queue.now() < end - 1e-9;) {
            computed += 0.1 * part;
            queue.advance(0.1);
        }
    }

    SampleFiles samples;
    VirtualMainQueue queue;
    double computed = 0;
    pid_t process = -1;
    std::deque<Request> requests;
    FileHelpers files{queue};
    PictureHelpers pictures{queue, files, [this](pid_t) { return computed; }};
};

// A drawing that takes practically for ever, because Qt searches all rules for each of its elements.
QByteArray endlessDrawing()
{
    QByteArray rules;
    for (int i = 0; i < 60'000; ++i)
        rules += ".a" + QByteArray::number(i) + " .b" + QByteArray::number(i) + "{fill:red}";
    QByteArray elements;
    for (int i = 0; i < 2'000; ++i)
        elements += "<rect class='a" + QByteArray::number(i) + "' width='1' height='1'/>";
    return "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 10 10'><style>" + rules + "</style>" + elements +
           "</svg>";
}

// Whether a helper begins with the drawing, and the request fails after its time and not before.
bool isGivenUp(PicturesFixture &f, const QByteArray &path)
{
    const auto &drawing = f.request(path, PictureTask::Drawing);
    if (!QTest::qWaitFor([&drawing] { return drawing.isBegun; }, HelperFixture::kPatience))
        return false;
    f.advance(PictureHelpers::kLongestDrawing - 0.2, 1);
    if (drawing.answer)
        return false;
    f.advance(1.4, 1);
    return drawing.answer && drawing.answer->shown.isNull();
}

} // namespace

void HelpersTest::a_helper_that_stands_still_is_given_up_after_its_time()
{
    PicturesFixture f;
    auto &late = f.standing();
    f.advance(PictureHelpers::kLongestPicture - 0.2, 0);
    QVERIFY(f.isKept());
    f.advance(0.4, 0);
    QVERIFY(!f.isKept());
    // The helper never began with the picture, so the picture may not be the reason.
    QTRY_VERIFY_WITH_TIMEOUT(late.answer.has_value(), HelperFixture::kPatience);
    QVERIFY(!late.answer->shown.isNull());
    QTRY_VERIFY_WITH_TIMEOUT(!isThere(f.process), HelperFixture::kPatience);
}

void HelpersTest::a_helper_that_gets_little_of_a_processor_is_waited_for()
{
    PicturesFixture f;
    auto &late = f.standing();
    f.advance(PictureHelpers::kLongestTurn - 0.2, 0.01);
    QVERIFY(f.isKept());
    QCOMPARE(::kill(f.process, SIGCONT), 0);
    QTRY_VERIFY_WITH_TIMEOUT(late.answer.has_value(), HelperFixture::kPatience);
    QVERIFY(!late.answer->shown.isNull());
    QVERIFY(f.isKept());
}

void HelpersTest::a_picture_may_be_computed_for_ten_seconds()
{
    PicturesFixture f;
    f.standing();
    // The helper gets half of a processor.
    f.advance(2 * PictureHelpers::kLongestPicture - 0.4, 0.5);
    QVERIFY(f.isKept());
    f.advance(2.8, 0.5);
    QVERIFY(!f.isKept());
}

void HelpersTest::a_helper_that_hardly_gets_on_is_given_up_in_the_end()
{
    PicturesFixture f;
    f.standing();
    f.advance(PictureHelpers::kLongestTurn - 0.2, 0.02);
    QVERIFY(f.isKept());
    f.advance(0.4, 0.02);
    QVERIFY(!f.isKept());
}

void HelpersTest::a_drawing_may_be_computed_for_five_seconds()
{
    PicturesFixture f;
    QVERIFY(isGivenUp(f, f.samples.file("a.svg", endlessDrawing())));
}

void HelpersTest::what_a_process_has_computed_is_counted()
{
    const double before = processorSeconds(::getpid());
    const std::clock_t begin = std::clock();
    while (std::clock() - begin < CLOCKS_PER_SEC / 20) {
    }
    QVERIFY(processorSeconds(::getpid()) - before >= 0.05);
    // The clock counts the time of this process only.
    QVERIFY(processorSeconds(::getpid()) - before < 5);
    const pid_t ended = ::fork();
    if (ended == 0)
        ::_exit(0);
    QCOMPARE(::waitpid(ended, nullptr, 0), ended);
    QCOMPARE(processorSeconds(ended), 0.0);
}

void HelpersTest::a_picture_that_two_helpers_fell_over_is_not_given_to_a_third()
{
    PicturesFixture f;
    const QByteArray path = f.samples.file("a.svg", endlessDrawing());
    QVERIFY(isGivenUp(f, path));
    QVERIFY(isGivenUp(f, path));
    const auto &refused = f.request(path, PictureTask::Drawing);
    QTRY_VERIFY_WITH_TIMEOUT(refused.answer.has_value(), HelperFixture::kPatience);
    QVERIFY(refused.answer->shown.isNull());
    QVERIFY(!refused.isBegun);
    const auto &other = f.request(f.samples.file("b.jpg", photo()));
    QTRY_VERIFY_WITH_TIMEOUT(other.answer.has_value(), HelperFixture::kPatience);
    QVERIFY(!other.answer->shown.isNull());
}

void HelpersTest::such_a_picture_is_tried_again_when_it_has_changed()
{
    PicturesFixture f;
    const QByteArray path = f.samples.file("a.svg", endlessDrawing());
    QVERIFY(isGivenUp(f, path));
    QVERIFY(isGivenUp(f, path));
    f.samples.file("a.svg",
                   "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 2 1'><rect width='2' height='1'/></svg>");
    const auto &changed = f.request(path, PictureTask::Drawing);
    QTRY_VERIFY_WITH_TIMEOUT(changed.answer.has_value(), HelperFixture::kPatience);
    QVERIFY(!changed.answer->shown.isNull());
}

void HelpersTest::helpers_end_when_they_have_been_idle()
{
    HelperFixture f;
    QVERIFY(f.hasPicture(f.request(f.samples.file("a.jpg", photo()))));
    const auto processes = f.generator.processes();
    QVERIFY(!processes.empty());
    f.queue.advance(FileHelpers::kIdle - 0.1);
    QCOMPARE(f.generator.processes(), processes);
    f.queue.advance(0.2);
    QVERIFY(f.generator.processes().empty());
    QVERIFY(f.files->processes().empty());
    for (const pid_t process : processes)
        QTRY_VERIFY_WITH_TIMEOUT(!isThere(process), HelperFixture::kPatience);
    QVERIFY(f.hasPicture(f.request(f.samples.file("b.jpg", photo()))));
}

void HelpersTest::helpers_end_with_the_shelf()
{
    std::vector<pid_t> processes;
    {
        HelperFixture f;
        QVERIFY(f.hasPicture(f.request(f.samples.file("a.jpg", photo()))));
        processes = f.generator.processes();
        stop(processes.front());
        processes.push_back(f.files->processes().front());
    }
    for (const pid_t process : processes)
        QTRY_VERIFY_WITH_TIMEOUT(!isThere(process), HelperFixture::kPatience);
}

void HelpersTest::a_folder_that_does_not_answer_keeps_no_other_one()
{
    HelperFixture f;
    QVERIFY(QDir().mkpath(QFile::decodeName(f.samples.path("slow"))));
    QVERIFY(f.hasPicture(f.request(f.samples.file("a.jpg", photo()))));
    // A stopped helper behaves like one that a file system blocks.
    const pid_t kept = f.files->processes().front();
    stop(kept);
    std::vector<size_t> slow;
    for (int i = 0; i < 10; ++i)
        slow.push_back(f.request(f.samples.file("slow/" + QByteArray::number(i) + ".jpg", photo())));
    f.queue.advance(FileHelpers::kLate);
    for (int i = 0; i < 10; ++i)
        QVERIFY(f.hasPicture(f.request(f.samples.file("good" + QByteArray::number(i) + ".jpg", photo()))));
    QVERIFY(!f.answers[slow.front()].isThere);
    QCOMPARE(::kill(kept, SIGCONT), 0);
    for (const size_t place : slow)
        QVERIFY(f.hasPicture(place));
}

void HelpersTest::an_icon_comes_by_name_while_a_folder_does_not_answer()
{
    HelperFixture f;
    std::vector<FileKind> kinds;
    int late = 0;
    const auto look = [&](const QByteArray &path) {
        f.files->look(
            path, 0, [&kinds](FileKind kind, const QByteArray &) { kinds.push_back(kind); }, [&late] { ++late; });
    };
    look(f.samples.path(""));
    QTRY_COMPARE_WITH_TIMEOUT(kinds.size(), size_t(1), HelperFixture::kPatience);
    stop(f.files->processes().front());
    look(f.samples.file("a.txt", "a"));
    QCOMPARE(late, 0);
    f.queue.advance(FileHelpers::kLate);
    QCOMPARE(late, 1);
    // The next question to the same folder is late at once.
    look(f.samples.file("b.txt", "b"));
    QCOMPARE(late, 2);
    for (const pid_t process : f.files->processes())
        ::kill(process, SIGCONT);
    QTRY_COMPARE_WITH_TIMEOUT(kinds.size(), size_t(3), HelperFixture::kPatience);
    QCOMPARE(kinds.back(), FileKind::Regular);
}

void HelpersTest::folders_that_do_not_answer_are_given_up_when_there_are_too_many()
{
    constexpr int kFolders = 9;
    HelperFixture f;
    int answers = 0;
    for (int i = 0; i < kFolders; ++i) {
        const QByteArray folder = f.samples.path("folder" + QByteArray::number(i));
        QVERIFY(QDir().mkpath(QFile::decodeName(folder)));
        f.files->look(folder + "/a", 0, [&answers](FileKind, const QByteArray &) { ++answers; });
        for (const pid_t process : f.files->processes())
            ::kill(process, SIGSTOP);
        f.queue.advance(FileHelpers::kLate);
    }
    QVERIFY2(f.files->processes().size() <= 8, QByteArray::number(int(f.files->processes().size())).constData());
    QCOMPARE(answers, 1);
}

void HelpersTest::a_helper_holds_none_of_the_shelfs_descriptors()
{
    HelperFixture f;
    // This descriptor has no close-on-exec flag.
    QFile open(QFile::decodeName(f.samples.file("open", "")));
    QVERIFY(open.open(QIODevice::ReadOnly));
    const int leaking = ::dup(open.handle());
    QVERIFY(f.hasPicture(f.request(f.samples.file("a.jpg", photo()))));
    for (const auto &processes : {f.generator.processes(), f.files->processes()}) {
        for (const pid_t process : processes) {
            const QDir held(u"/proc/%1/fd"_s.arg(process));
            for (const QFileInfo &entry : held.entryInfoList(QDir::System | QDir::Files | QDir::NoDotAndDotDot))
                QVERIFY(!entry.symLinkTarget().endsWith(QLatin1String("/open")));
        }
    }
    ::close(leaking);
}

void HelpersTest::every_helper_is_confined()
{
    HelperFixture f;
    QVERIFY(f.hasPicture(f.request(f.samples.file("a.jpg", photo()))));
    for (const auto &processes : {f.generator.processes(), f.files->processes()}) {
        for (const pid_t process : processes) {
            QFile file(u"/proc/%1/status"_s.arg(process));
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QByteArray status = file.readAll();
            if (!status.contains("Seccomp:\t2"))
                QSKIP("This build is not confined.");
            QVERIFY(status.contains("NoNewPrivs:\t1"));
        }
    }
}

void HelpersTest::without_helper_programs_there_are_no_pictures_and_no_waiting()
{
    HelperFixture f;
    HelperProcess::lookIn(f.samples.path("nowhere"));
    const size_t place = f.request(f.samples.file("a.jpg", photo()));
    for (int i = 0; i < 5; ++i)
        f.queue.runPending();
    QVERIFY(f.answers[place].isThere);
    QVERIFY(f.answers[place].image.isNull());
    useBuiltHelpers();
}

PARKLET_TEST(HelpersTest)
#include "HelpersTest.moc"
