// SPDX-License-Identifier: MIT
#pragma once

#include "platform/MainQueue.h"
#include "platform/linux/helpers/FileHelpers.h"
#include "platform/linux/helpers/HelperProcess.h"
#include "platform/linux/helpers/Protocol.h"

#include <QByteArray>
#include <QHash>
#include <QImage>
#include <QSize>

#include <deque>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <vector>

// A picture that is wanted of a file.
struct PictureRequest {
    PictureTask task = PictureTask::Whole;
    QByteArray path;
    QByteArray uri;
    double edge = 0; // points of the square that it is to fit
    double scale = 1;
    int kept = 0; // pixels of the cache's class that it is also to be made for; 0 for none
    struct Entry {
        QByteArray path;
        int pixels; // 0 for the one that says that nothing can be made
    };
    std::vector<Entry> entries; // of the cache, those that serve
};

// What became of it.
struct PictureAnswer {
    FileKind kind = FileKind::Missing; // nothing was made of what is not Regular
    FileStateRecord state;             // when it was looked at
    PictureOutcome outcome = PictureOutcome::GivenUp;
    std::optional<QSize> pixelSize; // what the file's header says
    QImage shown;
    QImage kept;
};

// Has pictures made by helpers that hold the files and nothing else. One that falls, takes too long or talks nonsense
// is replaced, and what it was at is answered with nothing; a file that did so twice is not given to another one while
// it stays as it is. Main thread only.
class PictureHelpers {
public:
    using Done = std::function<void(PictureAnswer)>;
    using ProcessorTime = std::function<double(pid_t)>; // seconds that a process has computed

    // How long a helper may compute one picture, and how long it may stand still at it. It is given more time on a
    // machine that gives it little of a processor.
    static constexpr double kLongestPicture = 10.0; // seconds
    static constexpr double kLongestDrawing = 5.0;
    // How long it may take in any case.
    static constexpr double kLongestTurn = 120.0;

    PictureHelpers(MainQueue &mainQueue, FileHelpers &files, ProcessorTime processorTime = processorSeconds);
    ~PictureHelpers();

    // Answers once, later, the oldest request first. `begun` is called whenever a helper begins with it.
    void request(PictureRequest request, Done done, std::function<void()> begun = nullptr);

    // The helpers that are there.
    std::vector<pid_t> processes() const;

private:
    struct Maker;

    struct Work {
        quint64 id;
        PictureRequest request;
        Done done;
        std::function<void()> begun;
        std::weak_ptr<Maker> maker;
        FileStateRecord state; // once it has been opened
        bool isPassed = false; // the maker has it
        bool isLate = false;   // it waits for its file system
        int attempts = 0;
    };
    using WorkPointer = std::shared_ptr<Work>;

    struct Maker {
        std::shared_ptr<HelperProcess> helper;
        std::shared_ptr<Descriptor> orders;
        bool draws = false;
        std::list<WorkPointer> works;
        WorkPointer begun;
        bool hasBegunAny = false;
        double processorSeconds = 0;
        std::shared_ptr<Timer> limit;
        // Since it has begun with what it is at:
        double atBegin = 0; // its processor time then
        double atMove = 0;  // and when it last got on
        double seconds = 0;
        double stillSeconds = 0;
    };
    using MakerPointer = std::shared_ptr<Maker>;

    struct Strikes {
        FileStateRecord state;
        int count = 0;
    };

    void pump();
    MakerPointer makerFor(bool draws);
    MakerPointer startMaker(bool draws);
    void failWaiting();
    void give(const MakerPointer &maker, const WorkPointer &work);
    void opened(const WorkPointer &work, const std::optional<OpenedFile> &file);
    void received(const MakerPointer &maker, Received &&received);
    void report(const MakerPointer &maker, const WorkPointer &work, PictureAnswer answer);
    void fell(const MakerPointer &maker);
    void disarmLimit(const MakerPointer &maker);
    void armLimit(const MakerPointer &maker);
    bool isPastLimit(Maker &maker) const;
    void strike(const Work &work);
    void again(const WorkPointer &work);
    void finish(const WorkPointer &work, PictureAnswer answer);
    void armIdle();

    MainQueue &mainQueue;
    FileHelpers &files;
    const ProcessorTime processorTime;
    std::deque<WorkPointer> waiting;
    std::list<MakerPointer> makers;
    QHash<QByteArray, Strikes> strikes;
    quint64 lastId = 0;
    std::shared_ptr<Timer> idle;
    std::shared_ptr<bool> alive = std::make_shared<bool>(true);
};
