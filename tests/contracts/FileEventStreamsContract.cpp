// SPDX-License-Identifier: MIT
#include "tests/contracts/Contracts.h"
#include "tests/contracts/World.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr double kLatency = 0.2; // seconds
constexpr double kBusy = 15.0;   // seconds; a busy machine may take so much longer, and a world waits for it

// A stream that counts its calls and ends with the test.
class Listener {
    Q_DISABLE_COPY_MOVE(Listener)

public:
    Listener(FileEventStreams &streams, const QString &folder, double latency)
        : stream(streams.create(folder, latency, [this] { ++calls; }))
    {
    }
    ~Listener()
    {
        stream->stop();
        stream->invalidate();
    }

    int calls = 0;
    const std::shared_ptr<FileEventStream> stream;
};

} // namespace

class FileEventStreamsContract : public QObject {
    Q_OBJECT

public:
    explicit FileEventStreamsContract(World &tested)
        : world(tested)
    {
    }

private slots:
    void a_change_is_reported_once_the_stream_is_started();
    void a_burst_of_changes_is_reported_once();
    void a_change_is_reported_at_most_the_latency_later();
    void what_changed_before_the_start_is_not_reported();
    void a_stopped_stream_is_silent();
    void an_invalidated_stream_is_silent_for_good();
    void a_stream_runs_on_without_its_handle();
    void a_stream_may_be_ended_from_its_own_handler();
    void a_new_file_was_created_just_now();
    void a_file_that_is_not_there_has_no_creation_date();

private:
    FileEventStreams &fileEventStreams() const { return *world.platform().fileEventStreams; }
    void change(const char *name) const { world.addFile(world.folder.path(), QString::fromLatin1(name)); }

    // Waits longer than a stream takes to report.
    void settle() const
    {
        const auto isOver = std::make_shared<bool>(false);
        world.platform().mainQueue->after(3 * kLatency, [isOver] { *isOver = true; });
        QVERIFY(world.waitFor([isOver] { return *isOver; }));
    }

    World &world;
};

void FileEventStreamsContract::a_change_is_reported_once_the_stream_is_started()
{
    int calls = 0;
    const auto stream = fileEventStreams().create(world.folder.path(), 0.1, [&calls] { ++calls; });
    QVERIFY(stream);
    stream->start();
    world.addFile(world.folder.path(), u"one"_s);
    QVERIFY(world.waitFor([&calls] { return calls > 0; }));
    stream->stop();
    stream->invalidate();
}

void FileEventStreamsContract::a_burst_of_changes_is_reported_once()
{
    // Wait until the changes of earlier tests have been reported.
    settle();
    Listener listener(fileEventStreams(), world.folder.path(), kLatency);
    listener.stream->start();
    for (const char *name : {"burst 1", "burst 2", "burst 3", "burst 4", "burst 5"})
        change(name);
    QVERIFY(world.waitFor([&listener] { return listener.calls > 0; }));
    settle();
    QCOMPARE(listener.calls, 1);
}

void FileEventStreamsContract::a_change_is_reported_at_most_the_latency_later()
{
    Listener listener(fileEventStreams(), world.folder.path(), kLatency);
    listener.stream->start();
    const double start = world.platform().mainQueue->now();
    change("in time");
    QVERIFY(world.waitFor([&listener] { return listener.calls > 0; }));
    QVERIFY(world.platform().mainQueue->now() - start < kLatency + kBusy);
}

void FileEventStreamsContract::what_changed_before_the_start_is_not_reported()
{
    change("early");
    settle();
    Listener listener(fileEventStreams(), world.folder.path(), kLatency);
    listener.stream->start();
    settle();
    QCOMPARE(listener.calls, 0);
}

void FileEventStreamsContract::a_stopped_stream_is_silent()
{
    Listener stopped(fileEventStreams(), world.folder.path(), kLatency);
    Listener clock(fileEventStreams(), world.folder.path(), 2 * kLatency);
    stopped.stream->start();
    stopped.stream->stop();
    clock.stream->start();
    change("two");
    QVERIFY(world.waitFor([&clock] { return clock.calls > 0; }));
    QCOMPARE(stopped.calls, 0);
}

void FileEventStreamsContract::an_invalidated_stream_is_silent_for_good()
{
    Listener silent(fileEventStreams(), world.folder.path(), kLatency);
    // This stream reports later than the other one would.
    Listener clock(fileEventStreams(), world.folder.path(), 2 * kLatency);
    clock.stream->start();
    silent.stream->start();
    silent.stream->invalidate();
    change("after the end");
    QVERIFY(world.waitFor([&clock] { return clock.calls > 0; }));
    settle();
    QCOMPARE(silent.calls, 0);
    silent.stream->start();
    const int before = clock.calls;
    change("after another start");
    QVERIFY(world.waitFor([&clock, before] { return clock.calls > before; }));
    QCOMPARE(silent.calls, 0);
}

void FileEventStreamsContract::a_stream_runs_on_without_its_handle()
{
    const auto calls = std::make_shared<int>(0);
    std::weak_ptr<FileEventStream> running;
    {
        const auto stream = fileEventStreams().create(world.folder.path(), 0.1, [calls] { ++*calls; });
        stream->start();
        running = stream;
    }
    world.addFile(world.folder.path(), u"three"_s);
    QVERIFY(world.waitFor([calls] { return *calls > 0; }));
    const auto stream = running.lock();
    QVERIFY(stream);
    stream->stop();
    stream->invalidate();
}

void FileEventStreamsContract::a_stream_may_be_ended_from_its_own_handler()
{
    int calls = 0;
    std::shared_ptr<FileEventStream> stream;
    stream = fileEventStreams().create(world.folder.path(), 0.1, [&calls, &stream] {
        ++calls;
        stream->stop();
        stream->invalidate();
        stream.reset();
    });
    stream->start();
    world.addFile(world.folder.path(), u"four"_s);
    QVERIFY(world.waitFor([&calls] { return calls > 0; }));
    QCOMPARE(calls, 1);
}

void FileEventStreamsContract::a_new_file_was_created_just_now()
{
    constexpr qint64 kMoment = 60; // seconds; two clocks never differ by more
    change("new");
    const QUrl file = QUrl::fromLocalFile(world.folder.filePath(u"new"_s));
    const auto date = fileEventStreams().creationDate(file);
    QVERIFY(date);
    QVERIFY(qAbs(date->secsTo(world.platform().mainQueue->currentDate())) < kMoment);
}

void FileEventStreamsContract::a_file_that_is_not_there_has_no_creation_date()
{
    QVERIFY(!fileEventStreams().creationDate(QUrl::fromLocalFile(world.folder.filePath(u"nothing"_s))));
}

std::unique_ptr<QObject> fileEventStreamsContract(World &world)
{
    return std::make_unique<FileEventStreamsContract>(world);
}

#include "FileEventStreamsContract.moc"
