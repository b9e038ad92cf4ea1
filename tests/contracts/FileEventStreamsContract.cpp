// SPDX-License-Identifier: MIT
#include "tests/contracts/Contracts.h"
#include "tests/contracts/World.h"

#include <QTest>

class FileEventStreamsContract : public QObject {
    Q_OBJECT

public:
    explicit FileEventStreamsContract(World &tested)
        : world(tested)
    {
    }

private slots:
    void a_change_is_reported_once_the_stream_is_started();
    void a_stopped_stream_is_silent();
    void a_stream_runs_on_without_its_handle();
    void a_stream_may_be_ended_from_its_own_handler();
    void a_file_that_is_not_there_has_no_creation_date();

private:
    FileEventStreams &fileEventStreams() const { return *world.platform().fileEventStreams; }

    World &world;
};

void FileEventStreamsContract::a_change_is_reported_once_the_stream_is_started()
{
    int calls = 0;
    const auto stream = fileEventStreams().create(world.folder.path(), 0.1, [&calls] { ++calls; });
    QVERIFY(stream);
    stream->start();
    world.addFile(world.folder.path(), QStringLiteral("one"));
    QVERIFY(world.waitFor([&calls] { return calls > 0; }));
    stream->stop();
    stream->invalidate();
}

void FileEventStreamsContract::a_stopped_stream_is_silent()
{
    int silent = 0;
    int heard = 0;
    const auto stopped = fileEventStreams().create(world.folder.path(), 0.1, [&silent] { ++silent; });
    const auto running = fileEventStreams().create(world.folder.path(), 0.1, [&heard] { ++heard; });
    stopped->start();
    stopped->stop();
    running->start();
    world.addFile(world.folder.path(), QStringLiteral("two"));
    QVERIFY(world.waitFor([&heard] { return heard > 0; }));
    QCOMPARE(silent, 0);
    running->stop();
    running->invalidate();
    stopped->invalidate();
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
    world.addFile(world.folder.path(), QStringLiteral("three"));
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
    world.addFile(world.folder.path(), QStringLiteral("four"));
    QVERIFY(world.waitFor([&calls] { return calls > 0; }));
    QCOMPARE(calls, 1);
}

void FileEventStreamsContract::a_file_that_is_not_there_has_no_creation_date()
{
    QVERIFY(!fileEventStreams().creationDate(QUrl::fromLocalFile(world.folder.filePath(QStringLiteral("nothing")))));
}

std::unique_ptr<QObject> fileEventStreamsContract(World &world)
{
    return std::make_unique<FileEventStreamsContract>(world);
}

#include "FileEventStreamsContract.moc"
