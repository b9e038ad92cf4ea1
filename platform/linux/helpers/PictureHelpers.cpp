// SPDX-License-Identifier: MIT
#include "platform/linux/helpers/PictureHelpers.h"

#include "platform/linux/helpers/Message.h"

#include <QThread>

#include <algorithm>
#include <cmath>

#include <unistd.h>

namespace {

constexpr int kMostMakers = 4;
constexpr int kMostDrawers = 2;
// One picture in progress, and the next one, so that the helper need not wait for it.
constexpr std::ptrdiff_t kMostWorks = 2;
constexpr int kMostAttempts = 3; // with helpers that crashed because of another file
constexpr int kMostStrikes = 2;
constexpr qsizetype kMostFilesStruck = 1'000;
// A helper is replaced long before the kernel ends it for its processor time.
constexpr double kMostProcessorSeconds = 20.0;

// The progress of a helper is checked so often.
constexpr double kLook = 1.0; // seconds
// A helper that uses less processor time than this counts as blocked, for example by a file system that answers slowly.
constexpr double kLeastProgress = 0.01; // seconds

constexpr double kMillisecondsPerSecond = 1000.0;

std::string_view view(const QByteArray &bytes)
{
    return {bytes.constData(), static_cast<size_t>(bytes.size())};
}

struct Layout {
    qint32 width = 0;
    qint32 height = 0;
    bool hasAlpha = false;

    bool isSane() const { return width >= 0 && height >= 0 && width <= kLongestSide && height <= kLongestSide; }
    size_t bytes() const { return size_t(width) * size_t(height) * sizeof(QRgb); }
};

Layout takeLayout(MessageReader &message)
{
    Layout layout;
    layout.width = message.take<std::int32_t>();
    layout.height = message.take<std::int32_t>();
    layout.hasAlpha = message.take<std::uint8_t>() != 0;
    return layout;
}

QImage imageAt(int memory, size_t offset, const Layout &layout)
{
    if (layout.bytes() == 0)
        return {};
    QImage image(layout.width, layout.height,
                 layout.hasAlpha ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    if (image.isNull())
        return {};
    const auto count = ::pread(memory, image.bits(), layout.bytes(), static_cast<off_t>(offset));
    return count == static_cast<ssize_t>(layout.bytes()) ? image : QImage();
}

// Reads the report with its pictures. Nothing when it is invalid.
std::optional<PictureAnswer> readReport(MessageReader &message, const std::vector<Descriptor> &descriptors,
                                        double &processorSeconds)
{
    PictureAnswer answer;
    answer.kind = FileKind::Regular;
    answer.outcome = message.take<PictureOutcome>();
    answer.state = message.take<FileStateRecord>();
    const auto width = message.take<std::int32_t>();
    const auto height = message.take<std::int32_t>();
    if (width >= 0 && height >= 0)
        answer.pixelSize = QSize(width, height);
    const Layout shown = takeLayout(message);
    const Layout kept = takeLayout(message);
    processorSeconds = message.take<double>();
    if (message.hasFailed() || !shown.isSane() || !kept.isSane())
        return {};
    if (descriptors.empty())
        return shown.bytes() + kept.bytes() == 0 ? std::optional(answer) : std::nullopt;
    const int memory = descriptors.front().get();
    if (!isSealedMemory(memory, shown.bytes() + kept.bytes()))
        return {};
    answer.shown = imageAt(memory, 0, shown);
    answer.kept = imageAt(memory, shown.bytes(), kept);
    return answer;
}

} // namespace

PictureHelpers::PictureHelpers(MainQueue &queue, FileHelpers &fileHelpers, ProcessorTime time)
    : mainQueue(queue)
    , files(fileHelpers)
    , processorTime(std::move(time))
{
}

PictureHelpers::~PictureHelpers()
{
    alive.reset();
    if (idle)
        idle->invalidate();
    for (const MakerPointer &maker : makers) {
        disarmLimit(maker);
        maker->helper->onMessage = nullptr;
        maker->helper->onEnd = nullptr;
    }
}

void PictureHelpers::request(PictureRequest request, Done done, std::function<void()> begun)
{
    const auto work = std::make_shared<Work>();
    work->id = ++lastId;
    work->request = std::move(request);
    work->done = std::move(done);
    work->begun = std::move(begun);
    waiting.push_back(work);
    pump();
}

std::vector<pid_t> PictureHelpers::processes() const
{
    std::vector<pid_t> list;
    for (const MakerPointer &maker : makers)
        list.push_back(maker->helper->processId());
    return list;
}

void PictureHelpers::pump()
{
    for (auto next = waiting.begin(); next != waiting.end();) {
        const WorkPointer work = *next;
        const MakerPointer maker =
            makerFor(work->request.task == PictureTask::Drawing ? Kind::Drawings : Kind::Pictures);
        if (!maker) {
            ++next;
            continue;
        }
        next = waiting.erase(next);
        give(maker, work);
    }
}

// The helper with the least work, or a new one if there may be more. Null when all have enough work.
PictureHelpers::MakerPointer PictureHelpers::makerFor(Kind kind)
{
    const auto load = [](const MakerPointer &maker) {
        return std::ranges::count_if(maker->works, [](const WorkPointer &work) { return !work->isLate; });
    };
    MakerPointer best;
    int count = 0;
    for (const MakerPointer &maker : makers) {
        if (maker->kind != kind)
            continue;
        ++count;
        if (maker->processorSeconds < kMostProcessorSeconds && (!best || load(maker) < load(best)))
            best = maker;
    }
    const int most = kind == Kind::Drawings ? kMostDrawers : std::clamp(QThread::idealThreadCount(), 1, kMostMakers);
    if ((!best || load(best) > 0) && count < most) {
        if (MakerPointer another = startMaker(kind))
            return another;
        // The program is missing, or the system has no room for another process.
        if (!best) {
            failWaiting();
            return {};
        }
    }
    return best && load(best) < kMostWorks ? best : nullptr;
}

void PictureHelpers::failWaiting()
{
    mainQueue.async([this, stillThere = std::weak_ptr<bool>(alive)] {
        if (stillThere.expired())
            return;
        const auto unanswered = std::exchange(waiting, {});
        for (const WorkPointer &work : unanswered)
            finish(work, {});
    });
}

PictureHelpers::MakerPointer PictureHelpers::startMaker(Kind kind)
{
    auto [ours, theirs] = socketPair();
    if (!ours.isOpen())
        return {};
    auto maker = std::make_shared<Maker>();
    maker->kind = kind;
    maker->orders = std::make_shared<Descriptor>(std::move(ours));
    maker->helper = HelperProcess::start("parklet-thumbnailer",
                                         kind == Kind::Drawings ? QList<QByteArray>{"--drawings"} : QList<QByteArray>{},
                                         std::move(theirs));
    if (!maker->helper)
        return {};
    const std::weak_ptr<Maker> weak = maker;
    maker->helper->onMessage = [this, weak](Received &&message) {
        if (const MakerPointer one = weak.lock())
            received(one, std::move(message));
    };
    maker->helper->onEnd = [this, weak] {
        if (const MakerPointer one = weak.lock())
            fell(one);
    };
    makers.push_back(maker);
    return maker;
}

void PictureHelpers::give(const MakerPointer &maker, const WorkPointer &work)
{
    const PictureRequest &request = work->request;
    std::vector<QByteArray> entries;
    MessageWriter picture;
    picture.add(work->id).add(request.task).add(request.edge).add(request.scale);
    picture.add(double(mainQueue.currentDate().toMSecsSinceEpoch()) / kMillisecondsPerSecond);
    picture.add(std::int32_t(request.kept)).addBytes(view(request.uri));
    for (const PictureRequest::Entry &entry : request.entries) {
        picture.add(std::int32_t(entry.pixels));
        entries.push_back(entry.path);
    }
    const Strikes struck = strikes.value(request.path);
    // No file has this state.
    constexpr FileStateRecord kNone{-1, 0, 0};
    work->maker = maker;
    work->isPassed = false;
    work->isLate = false;
    maker->works.push_back(work);
    files.make(
        request.path, struck.count >= kMostStrikes ? struck.state : kNone, entries, picture.bytes(), maker->orders,
        [this, work, stillThere = std::weak_ptr<bool>(alive)] {
            if (stillThere.expired())
                return;
            work->isLate = true;
            mainQueue.async([this, stillThere] {
                if (!stillThere.expired())
                    pump();
            });
        },
        [this, work, stillThere = std::weak_ptr<bool>(alive)](const std::optional<OpenedFile> &file) {
            if (!stillThere.expired())
                opened(work, file);
        });
}

void PictureHelpers::opened(const WorkPointer &work, const std::optional<OpenedFile> &file)
{
    const MakerPointer maker = work->maker.lock();
    if (!work->done)
        return; // its report has already arrived
    const bool isPassed = file && file->passed == Passed::Yes;
    if (isPassed && maker) {
        work->isLate = false;
        work->isPassed = true;
        work->state = file->state;
        armLimit(maker);
        return;
    }
    if (maker)
        maker->works.remove(work);
    if (file && file->passed != Passed::No) {
        again(work);
        return;
    }
    PictureAnswer answer;
    if (file) {
        answer.kind = file->kind;
        answer.state = file->state;
    }
    finish(work, std::move(answer));
    pump();
}

void PictureHelpers::received(const MakerPointer &maker, Received &&received)
{
    MessageReader message(received.bytes);
    const auto news = message.take<PictureNews>();
    const auto id = message.take<std::uint64_t>();
    const auto found = std::ranges::find_if(maker->works, [id](const WorkPointer &work) { return work->id == id; });
    if (message.hasFailed() || found == maker->works.end()) {
        fell(maker);
        return;
    }
    const WorkPointer work = *found;
    if (news == PictureNews::Begun) {
        maker->begun = work;
        maker->hasBegunAny = true;
        work->state = message.take<FileStateRecord>();
        work->isPassed = true;
        work->isLate = false;
        disarmLimit(maker);
        armLimit(maker);
        if (work->begun)
            work->begun();
        return;
    }
    auto answer = readReport(message, received.descriptors, maker->processorSeconds);
    if (!answer || maker->begun != work) {
        fell(maker);
        return;
    }
    report(maker, work, std::move(*answer));
}

void PictureHelpers::report(const MakerPointer &maker, const WorkPointer &work, PictureAnswer answer)
{
    maker->works.remove(work);
    maker->begun.reset();
    disarmLimit(maker);
    armLimit(maker);
    if (maker->processorSeconds >= kMostProcessorSeconds && maker->works.empty()) {
        maker->helper->retire();
        makers.remove(maker);
    }
    armIdle();
    finish(work, std::move(answer));
    pump();
}

// Replaces a helper that has ended or must end.
void PictureHelpers::fell(const MakerPointer &maker)
{
    maker->helper->onMessage = nullptr;
    maker->helper->onEnd = nullptr;
    disarmLimit(maker);
    makers.remove(maker);
    const WorkPointer guilty = std::exchange(maker->begun, nullptr);
    const auto works = std::exchange(maker->works, {});
    maker->helper.reset();
    if (guilty) {
        strike(*guilty);
        finish(guilty, {});
    }
    // Works that have not reached the helper come back from their opener.
    for (auto work = works.rbegin(); work != works.rend(); ++work) {
        if (*work == guilty || !(*work)->isPassed)
            continue;
        if (maker->hasBegunAny)
            again(*work);
        else
            finish(*work, {});
    }
    pump();
}

void PictureHelpers::disarmLimit(const MakerPointer &maker)
{
    if (maker->limit)
        maker->limit->invalidate();
    maker->limit.reset();
}

// A helper that has work must send something within the time limit.
void PictureHelpers::armLimit(const MakerPointer &maker)
{
    const bool hasWork = maker->begun || std::ranges::any_of(maker->works, &Work::isPassed);
    if (maker->limit || !hasWork)
        return;
    maker->atBegin = processorTime(maker->helper->processId());
    maker->atMove = maker->atBegin;
    maker->seconds = 0;
    maker->stillSeconds = 0;
    const std::weak_ptr<Maker> weak = maker;
    maker->limit = mainQueue.every(kLook, [this, weak, stillThere = std::weak_ptr<bool>(alive)] {
        const MakerPointer one = weak.lock();
        if (!stillThere.expired() && one && isPastLimit(*one))
            fell(one);
    });
}

bool PictureHelpers::isPastLimit(Maker &maker) const
{
    const double most = maker.kind == Kind::Drawings ? kLongestDrawing : kLongestPicture;
    const double now = processorTime(maker.helper->processId());
    maker.seconds += kLook;
    maker.stillSeconds += kLook;
    if (now - maker.atMove >= kLeastProgress) {
        maker.atMove = now;
        maker.stillSeconds = 0;
    }
    return now - maker.atBegin >= most || maker.stillSeconds >= most || maker.seconds >= kLongestTurn;
}

void PictureHelpers::strike(const Work &work)
{
    if (strikes.size() >= kMostFilesStruck)
        strikes.clear();
    Strikes &struck = strikes[work.request.path];
    if (struck.state != work.state)
        struck = {work.state, 0};
    ++struck.count;
}

void PictureHelpers::again(const WorkPointer &work)
{
    if (++work->attempts >= kMostAttempts) {
        finish(work, {});
        return;
    }
    waiting.push_front(work);
    pump();
}

void PictureHelpers::finish(const WorkPointer &work, PictureAnswer answer)
{
    if (const auto done = std::exchange(work->done, nullptr))
        done(std::move(answer));
}

void PictureHelpers::armIdle()
{
    if (idle)
        idle->invalidate();
    idle = mainQueue.after(FileHelpers::kIdle, [this, stillThere = std::weak_ptr<bool>(alive)] {
        if (stillThere.expired())
            return;
        std::erase_if(makers, [](const MakerPointer &maker) {
            if (maker->works.empty())
                maker->helper->retire();
            return maker->works.empty();
        });
    });
}
