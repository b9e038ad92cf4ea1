// SPDX-License-Identifier: MIT
#include "tests/contracts/Contracts.h"
#include "tests/contracts/World.h"

#include <QMutex>
#include <QTest>

using namespace Qt::StringLiterals;

class ThumbnailGeneratorContract : public QObject {
    Q_OBJECT

public:
    explicit ThumbnailGeneratorContract(World &tested)
        : world(tested)
    {
    }

private slots:
    void every_request_is_answered_once();

private:
    ThumbnailGenerator &thumbnailGenerator() const { return *world.platform().thumbnailGenerator; }

    World &world;
};

void ThumbnailGeneratorContract::every_request_is_answered_once()
{
    QMutex mutex;
    int answers = 0;
    const auto count = [&](const std::optional<Thumbnail> &) {
        const QMutexLocker lock(&mutex);
        ++answers;
    };
    const auto answered = [&](int wanted) {
        const QMutexLocker lock(&mutex);
        return answers >= wanted;
    };
    const QUrl words = world.makeFile(u"words.txt"_s, "words");
    const QUrl nothing = QUrl::fromLocalFile(world.folder.filePath(u"nothing.png"_s));
    thumbnailGenerator().generate(words, 72, 1.0, count);
    thumbnailGenerator().generate(nothing, 72, 1.0, count);
    QVERIFY(world.waitFor([&] { return answered(2); }));
    thumbnailGenerator().generate(nothing, 72, 1.0, count);
    QVERIFY(world.waitFor([&] { return answered(3); }));
    const QMutexLocker lock(&mutex);
    QCOMPARE(answers, 3);
}

std::unique_ptr<QObject> thumbnailGeneratorContract(World &world)
{
    return std::make_unique<ThumbnailGeneratorContract>(world);
}

#include "ThumbnailGeneratorContract.moc"
