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

// A request for a picture of a file.
struct PictureRequest {
    PictureTask task = PictureTask::Whole;
    QByteArray path;
    QByteArray uri;
    double edge = 0; // points; the picture fits a square of this edge
    double scale = 1;
    int kept = 0; // pixels of the class for which it is also put into the cache; 0 for no entry
    struct Entry {
        QByteArray path;
        int pixels; // 0 for the entry that notes a failure
    };
    std::vector<Entry> entries; // the cache entries that may serve
};

// The answer to a request.
struct PictureAnswer {
    FileKind kind = FileKind::Missing; // a file that is not Regular has no picture
    FileStateRecord state;             // at the time of opening
    PictureOutcome outcome = PictureOutcome::GivenUp;
    std::optional<QSize> pixelSize; // from the file's header
    QImage shown;
    QImage kept;
};

// Lets helpers make pictures. A helper has access to the files that it has received and to nothing else. If it crashes,
// takes too long or sends an invalid message, it is replaced and its request is answered with nothing. A file that has
// done this twice is not given to a helper again until it changes. Main thread only.
class PictureHelpers {
public:
    using Done = std::function<void(PictureAnswer)>;
    using ProcessorTime = std::function<double(pid_t)>; // the processor time of a process, in seconds

    // A helper may compute so long for one picture, and may be blocked for so long. It gets more time on a machine that
    // gives it little processor time.
    static constexpr double kLongestPicture = 10.0; // seconds
    static constexpr double kLongestDrawing = 5.0;
    // The longest time for one picture in any case.
    static constexpr double kLongestTurn = 120.0;

    PictureHelpers(MainQueue &mainQueue, FileHelpers &files, ProcessorTime processorTime = processorSeconds);
    ~PictureHelpers();

    // Answers each request once, later, the oldest first. `begun` is called whenever a helper begins to work on it.
    void request(PictureRequest request, Done done, std::function<void()> begun = nullptr);

    // The process numbers of the running helpers.
    std::vector<pid_t> processes() const;

private:
    struct Maker;

    struct Work {
        quint64 id;
        PictureRequest request;
        Done done;
        std::function<void()> begun;
        std::weak_ptr<Maker> maker;
        FileStateRecord state; // once the file is open
        bool isPassed = false; // the maker has received the file
        bool isLate = false;   // the file system has not answered in time
        int attempts = 0;
    };
    using WorkPointer = std::shared_ptr<Work>;

    enum class Kind { Pictures, Drawings };

    struct Maker {
        std::shared_ptr<HelperProcess> helper;
        std::shared_ptr<Descriptor> orders;
        Kind kind = Kind::Pictures;
        std::list<WorkPointer> works;
        WorkPointer begun;
        bool hasBegunAny = false;
        double processorSeconds = 0;
        std::shared_ptr<Timer> limit;
        // Since the helper began its picture:
        double atBegin = 0; // its processor time at the beginning
        double atMove = 0;  // its processor time at the last progress
        double seconds = 0;
        double stillSeconds = 0;
    };
    using MakerPointer = std::shared_ptr<Maker>;

    struct Strikes {
        FileStateRecord state;
        int count = 0;
    };

    void pump();
    MakerPointer makerFor(Kind kind);
    MakerPointer startMaker(Kind kind);
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
